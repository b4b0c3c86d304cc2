#include "style/table_value.h"

#include "tree/html_value.h"

HtmlValue* makeValue(const TableValue& value, ValueCache& values)
{
    switch (value.kind) {
    case TableValue::Kind::Keyword:
        return values.keywordValue(value.keyword);
    case TableValue::Kind::Color:
        return values.colorValue(0);
    case TableValue::Kind::Pixels:
        return values.lengthValue(value.number, UNITS_PIXELS);
    case TableValue::Kind::Em:
        return values.lengthValue(value.number, UNITS_EM);
    case TableValue::Kind::Text:
        return values.stringValue(value.text);
    }
    return nullptr;
}
