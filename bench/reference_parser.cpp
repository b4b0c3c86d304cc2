#include "bench/reference_parser.h"

#include <libxml/HTMLparser.h>

namespace bench {

std::uint64_t parseWithReference(const Document& document)
{
    constexpr int kOptions = HTML_PARSE_RECOVER | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING
        | HTML_PARSE_NONET | HTML_PARSE_COMPACT;
    htmlDocPtr tree = htmlReadMemory(document.bytes.data(), static_cast<int>(document.bytes.size()),
        "page.html", nullptr, kOptions);
    if (tree == nullptr)
        return 0;
    xmlFreeDoc(tree);
    return 1;
}

} // namespace bench
