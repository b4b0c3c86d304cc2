#include "filter/entry_points.h"

#include "containers/array_list.h"
#include "containers/indexed_list.h"
#include "filter/filter_internals.h"
#include "filter/info.h"
#include "output/host_routines.h"
#include "style/cascade.h"
#include "style/css_declaration_list.h"
#include "support/dynamic_store.h"
#include "support/engine_options.h"
#include "support/process_heap.h"
#include "support/wstring.h"
#include "tree/active_formatting.h"
#include "tree/html_tree.h"
#include "tree/html_value.h"
#include "tree/tree_state.h"

#include <cstring>

using zorvan::newObject;

namespace {

constexpr std::int32_t kTreeStateGrowth = 32;
constexpr std::size_t kOptionHandleOffset = 24;
constexpr std::uint32_t kFlattenTablesBit = 1;
constexpr std::uint32_t kDefaultStyleCount = 37;

void createTexts(HtmlFilterContext& context)
{
    context.pendingText = newObject<zorvan::WString>();
    context.pendingTableChars = newObject<zorvan::WString>();
    context.pendingChars = newObject<zorvan::WString>();
}

void readOpenRecord(OpenRecord& record, HtmlFilterContext& context)
{
    if ((record.flags & OPEN_FLAG_PACKETS_AS_PROPERTIES) != 0)
        context.xmpToProperties = 1;
    else if ((record.flags & OPEN_FLAG_PACKETS_AS_OBJECTS) != 0)
        context.xmpToSubdocument = 1;
    context.requestedCharSetId = record.requestedCharSetId;
    record.textCharSetId = CHARSET_ID_UTF16;
    // The first type's name goes out whatever the file's type is; only its bytes are written.
    const char* const name = firstFileType().name;
    std::memcpy(record.typeName, name, std::strlen(name) + 1);
}

/// Fills a list with the default style. One that there is no memory to fill goes again, so that no
/// document is read with half a style.
void fillStyle(CssDeclarationList*& list, ValueCache& values)
{
    if (list == nullptr)
        return;
    fillDefaultStyle(*list, values);
    if (list->getCount() == kDefaultStyleCount)
        return;
    delete list;
    list = nullptr;
}

void createDefaultStyle(HtmlFilterContext& context)
{
    ValueCache* const values = context.valueCache;
    context.initialStyle = newObject<CssDeclarationList>(values);
    context.runningStyle = newObject<CssDeclarationList>(values);
    if (values == nullptr)
        return;
    HtmlValue* const transparent = values->keywordValue(VALUE_TRANSPARENT);
    for (HtmlValue** background : {&context.buildBodyBackground, &context.buildBlockBackground,
             &context.buildInlineBackground, &context.buildTableBackground, &context.bodyBackground,
             &context.blockBackground, &context.inlineBackground, &context.tableBackground})
        *background = transparent;
    fillStyle(context.initialStyle, *values);
    fillStyle(context.runningStyle, *values);
}

void readDocumentOptions(const OpenRecord& record, HtmlFilterContext& context)
{
    if (record.optionOwner == nullptr)
        return;
    void* handle = nullptr;
    std::memcpy(&handle, static_cast<const std::uint8_t*>(record.optionOwner) + kOptionHandleOffset,
        sizeof(handle));
    std::uint32_t tableMode = 0;
    UTGetOption(handle, OPTION_TABLE_MODE, &tableMode, sizeof(tableMode));
    if ((tableMode & kFlattenTablesBit) != 0)
        context.flattenTables = 1;
}

} // namespace

// An object that there is no memory for leaves its field null, and the section start that needs it
// ends with std::bad_alloc; so does this call at once when it is the storage of a container.
std::uint16_t VwStreamOpen(StreamBlock* stream, std::uint16_t fileId, void*, OpenRecord* openRecord,
    HtmlFilterContext* context)
{
    HtmlFilterContext& document = *context;
    std::memset(static_cast<void*>(context), 0, kDocumentStateEnd);
    document.internals = newObject<HtmlFilterInternals>();
    document.treeStates = newObject<zorvan::IndexedList<TreeState>>(kTreeStateGrowth);
    document.valueCache = newObject<ValueCache>();
    document.treeList = newObject<zorvan::ArrayList<HtmlTree*>>();
    document.openInitMinusOne = 0xFFFFFFFF;
    createTexts(document);
    readOpenRecord(*openRecord, document);
    document.stream = stream;
    document.fontNames = newObject<zorvan::ArrayList<zorvan::WString*>>();
    document.fileId = fileId;
    UTGetGlobalOption(
        GLOBAL_OPTION_BACKGROUND, &document.backgroundOption, sizeof(document.backgroundOption));
    FUTInitDynamicStore(document.dynamicStore);
    FUTCreateDynamicVar(document.dynamicStore, &document.dynamicVar);
    document.activeFormatting = newObject<ActiveFormattingList>();
    createDefaultStyle(document);
    readDocumentOptions(*openRecord, document);
    return 0;
}
