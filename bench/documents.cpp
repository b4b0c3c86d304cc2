#include "bench/documents.h"

#include <string_view>

namespace bench {

namespace {

    /// head, then pattern again and again up to size, then tail.
    Document repeated(std::string_view head, std::string_view pattern, std::string_view tail,
        std::size_t size, std::uint16_t fileType = 1101)
    {
        Document document;
        document.fileType = fileType;
        document.bytes.reserve(size + pattern.size() + head.size() + tail.size());
        document.bytes += head;
        while (document.bytes.size() + tail.size() < size)
            document.bytes += pattern;
        document.bytes += tail;
        return document;
    }

    constexpr std::string_view kHead = "<html><head><title>t</title></head><body>\n";
    constexpr std::string_view kTail = "</body></html>\n";

    Document runningText(std::size_t size)
    {
        return repeated(kHead,
            "<p>The path climbs from the station to a view over the strait. From there it is "
            "twenty\n"
            "minutes to the lighthouse, and the keeper's house is open on Sundays only. We left "
            "the\n"
            "old town at seven, with the fog still in the streets, and took the first train "
            "north.\n"
            "The ride takes fifty minutes, long enough for a coffee and a look at the map. The "
            "water\n"
            "was cold, the bread on the other side still warm.</p>\n",
            kTail, size);
    }

    Document denseMarkup(std::size_t size)
    {
        return repeated(kHead,
            "<p><b>bold</b> <i>it<b>al</b>ic</i> <span class=\"x\">span <em>em</em></span>\n"
            "<a href=\"page.html\">link</a> <code>code</code></p>\n",
            kTail, size);
    }

    Document largeTable(std::size_t size)
    {
        return repeated("<html><body><table border=\"1\">\n",
            "<tr><td>Train, return</td><td align=\"right\">18.40</td><td>36.80</td></tr>\n",
            "</table></body></html>\n", size);
    }

    Document references(std::size_t size)
    {
        return repeated(kHead,
            "<p>caf&eacute; &amp; bar &mdash; 14&nbsp;&deg;C, &#8364;12, &#x20AC;13; R&D "
            "&lt;b&gt;</p>\n",
            kTail, size);
    }

    // Words of Cyrillic text in Windows-1251.
    Document eightBit(std::size_t size)
    {
        return repeated("<html><head><meta http-equiv=\"content-type\" content=\"text/html; "
                        "charset=windows-1251\"></head><body>\n",
            "<p>\xCF\xEE\xE5\xE7\xE4 \xE8\xE4\xE5\xF2 \xEF\xFF\xF2\xFC\xE4\xE5\xF1\xFF\xF2 "
            "\xEC\xE8\xED\xF3\xF2, \xE2\xF0\xE5\xEC\xE5\xED\xE8 \xF5\xE2\xE0\xF2\xE8\xF2 "
            "\xED\xE0 \xEA\xEE\xF4\xE5 \xE8 \xEA\xE0\xF0\xF2\xF3.</p>\n",
            kTail, size);
    }

    Document utf8Text(std::size_t size)
    {
        return repeated("<html><head><meta charset=\"utf-8\"></head><body>\n",
            "<p>\xD0\x9F\xD0\xBE\xD0\xB5\xD0\xB7\xD0\xB4 \xD0\xB8\xD0\xB4\xD0\xB5\xD1\x82 "
            "\xD0\xBF\xD1\x8F\xD1\x82\xD1\x8C\xD0\xB4\xD0\xB5\xD1\x81\xD1\x8F\xD1\x82 "
            "\xD0\xBC\xD0\xB8\xD0\xBD\xD1\x83\xD1\x82, caf\xC3\xA9, na\xC3\xAFve.</p>\n",
            kTail, size);
    }

    Document shiftJis(std::size_t size)
    {
        return repeated("<html><head><meta http-equiv=\"content-type\" content=\"text/html; "
                        "charset=shift_jis\"></head><body>\n",
            "<p>"
            "\x89\x63\x8B\xC6\x8E\x9E\x8A\xD4\x82\xCD\x8C\xDF\x91\x4F\x8F\x5C\x8E\x9E\x82\xA9\x82"
            "\xE7"
            "\x8C\xDF\x8C\xE3\x98\x5A\x8E\x9E\x82\xDC\x82\xC5\x82\xC5\x82\xB7\x81\x42 open "
            "daily</p>\n",
            kTail, size);
    }

} // namespace

const std::vector<DocumentKind>& documentKinds()
{
    static const std::vector<DocumentKind> kinds = {
        {"text", runningText},
        {"markup", denseMarkup},
        {"table", largeTable},
        {"references", references},
        {"windows1251", eightBit},
        {"utf8", utf8Text},
        {"shiftjis", shiftJis},
    };
    return kinds;
}

} // namespace bench
