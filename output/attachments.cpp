#include "output/attachments.h"

#include "tree/html_value.h"

#include <cstddef>
#include <string_view>

namespace {

/// Whether an 8-bit text ends in a 16-bit one, byte by unit.
bool endsIn(std::string_view text, std::u16string_view end)
{
    if (end.size() > text.size())
        return false;
    const std::string_view tail = text.substr(text.size() - end.size());
    for (std::size_t i = 0; i < end.size(); ++i) {
        if (static_cast<unsigned char>(tail[i]) != end[i])
            return false;
    }
    return true;
}

bool isLinkedBy(const AttachmentRecord& record, std::u16string_view address)
{
    if (record.contentId != nullptr) {
        const std::string_view contentId = record.contentId;
        if (contentId.size() == address.size() && endsIn(contentId, address))
            return true;
    }
    // QUIRK(Attachments.EmptyAddressMeansTheFirstFile): every file name ends in an empty address.
    return record.fileName != nullptr && endsIn(record.fileName, address);
}

} // namespace

const AttachmentRecord* useLinkedAttachment(
    const HtmlWStringValue& address, HtmlFilterContext& context)
{
    if (context.embeddedObjects == nullptr)
        return nullptr;
    const auto& table = *static_cast<const AttachmentTable*>(context.embeddedObjects);
    const std::u16string_view text(address.text, address.length);
    auto* place = static_cast<std::byte*>(table.records);
    for (std::uint32_t left = table.last - table.first; left != 0; --left) {
        auto& record = *reinterpret_cast<AttachmentRecord*>(place);
        if (isLinkedBy(record, text)) {
            record.used = 1;
            return &record;
        }
        place += table.recordSize;
    }
    return nullptr;
}
