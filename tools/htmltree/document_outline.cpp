#include "tools/htmltree/document_outline.h"

#include "containers/array_list.h"
#include "containers/left_child_right_sib_tree.h"
#include "filter/entry_points.h"
#include "filter/filter_internals.h"
#include "support/engine_options.h"
#include "support/exception.h"
#include "tools/htmltree/style_origins.h"
#include "tree/html_tree.h"

#include <cstdint>
#include <cstring>
#include <new>

namespace htmltree {

namespace {

    /// What OpenRecord.optionOwner points to.
    struct OptionOwner {
        std::uint8_t reserved[24];
        void* handle;
    };
    static_assert(offsetof(OptionOwner, handle) == 24);

    /// A document between its first entry point and its last. No routine is set: what the filter
    /// tells goes nowhere.
    class Document {
    public:
        explicit Document(host::DocumentStream& stream)
            : context_(VwAllocProc())
        {
            if (context_ == nullptr)
                throw std::bad_alloc();
            VwLocalUp(&stream, &block_, context_);
        }
        Document(const Document&) = delete;
        Document& operator=(const Document&) = delete;
        ~Document()
        {
            if (isOpen_)
                VwStreamClose(block_, context_);
            ::HostStream* returned = nullptr;
            if (block_ != nullptr)
                VwLocalDown(block_, &returned);
            UTFreeOptions(owner_.handle);
            VwFreeProc(context_);
        }

        /// observer: told of the style of each element; null for none.
        void read(const host::ConversionOptions& options, CascadeObserver* observer)
        {
            if (block_ == nullptr)
                throw std::bad_alloc();
            for (const host::OptionValue& option : options.documentOptions) {
                if (UTSetOption(owner_.handle, option.id, &option.value, sizeof option.value) != 0)
                    throw std::bad_alloc();
            }
            OpenRecord record = {};
            record.flags = options.openFlags;
            record.requestedCharSetId = options.charSetId;
            record.optionOwner = &owner_;
            isOpen_ = true;
            VwStreamOpen(block_, options.fileType, nullptr, &record, context_);
            if (context_->internals != nullptr)
                context_->internals->cascadeObserver = observer;
            VwStreamSection(block_, context_);
            // A read ends behind each outermost table.
            do {
                VwStreamRead(block_, context_);
                if (context_->walkFinished != 0)
                    return;
            } while (context_->statusFlags == STATUS_HOST_STOP);
            throw UnfinishedDocument("the filter gave the document up");
        }

        /// What: as outlineOf takes it.
        template <typename What> std::string outline(const What& what) const
        {
            std::string text;
            for (HtmlTree* tree : *context_->treeList)
                text += outlineOf(*tree->root(), what);
            return text;
        }

    private:
        HtmlFilterContext* context_;
        StreamBlock* block_ = nullptr;
        OptionOwner owner_ = {{}, this};
        bool isOpen_ = false;
    };

    /// Reads a document and answers its outline. what: as outlineOf takes it.
    template <typename What>
    std::string readOutline(host::DocumentStream& stream, const host::ConversionOptions& options,
        CascadeObserver* observer, const What& what)
    {
        Document document(stream);
        document.read(options, observer);
        return document.outline(what);
    }

    /// What read() answers; throws what outlineOfDocument throws.
    template <typename Read>
    std::string tellingFailures(const host::DocumentStream& stream, Read read)
    {
        std::string outline;
        try {
            outline = read();
        } catch (const zorvan::Exception& exception) {
            const char* message = exception.message();
            throw UnfinishedDocument("the filter failed with code "
                + std::to_string(exception.code()) + ": " + (message == nullptr ? "" : message));
        } catch (const UTBailOut& bailOut) {
            throw UnfinishedDocument(
                "the filter bailed out with code " + std::to_string(bailOut.code));
        }
        if (stream.readFailure() != 0)
            throw host::ReadError(std::strerror(stream.readFailure()));
        return outline;
    }

} // namespace

std::string outlineOfDocument(
    host::DocumentStream& stream, const host::ConversionOptions& options, Declarations declarations)
{
    return tellingFailures(
        stream, [&] { return readOutline(stream, options, nullptr, declarations); });
}

std::string stylesOfDocument(host::DocumentStream& stream, const host::ConversionOptions& options)
{
    StyleOrigins origins;
    const Notes notes = [&origins](const HtmlTreeNode& element) {
        return origins.linesOf(element.data->getDeclarations());
    };
    return tellingFailures(stream, [&] { return readOutline(stream, options, &origins, notes); });
}

} // namespace htmltree
