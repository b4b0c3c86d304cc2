#include "host/session.h"

#include "host/routine_table.h"
#include "support/engine_options.h"
#include "support/exception.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <exception>
#include <new>

namespace host {

namespace {

    constexpr std::uint32_t kOutOfMemory = 13;

    // A read that is short of memory returns without a call and may be tried again.
    constexpr int kMostSilentReads = 16;

    /// What OpenRecord.optionOwner points to.
    struct OptionOwner {
        std::uint8_t reserved[24];
        void* handle;
    };
    static_assert(offsetof(OptionOwner, handle) == 24);

    /// One document between its first and its last entry point.
    class Document {
    public:
        Document(const Module& module, DocumentStream& stream, HostSession& session)
            : entry_(module.entry())
            , module_(module)
            , stream_(stream)
            , session_(session)
        {
        }

        void run(const ConversionOptions& options)
        {
            context_ = entry_.allocProc();
            if (context_ == nullptr)
                throw std::bad_alloc();
            entry_.localUp(&stream_, &block_, context_);
            if (block_ == nullptr)
                throw std::bad_alloc();
            installRoutines(module_, session_, context_);
            open(options);
            entry_.streamSection(block_, context_);
            tell([this] { session_.sink.sectionStarted(); });
            readToEnd();
        }

        void closeStream()
        {
            if (opened_)
                entry_.streamClose(block_, context_);
        }

        void takeDown()
        {
            ::HostStream* returned = nullptr;
            if (block_ != nullptr)
                entry_.localDown(block_, &returned);
        }

        void free()
        {
            UTFreeOptions(owner_.handle);
            if (context_ != nullptr)
                entry_.freeProc(context_);
        }

    private:
        void open(const ConversionOptions& options)
        {
            for (const OptionValue& option : options.documentOptions) {
                if (UTSetOption(owner_.handle, option.id, &option.value, sizeof option.value) != 0)
                    throw std::bad_alloc();
            }
            OpenRecord record = {};
            record.flags = options.openFlags;
            record.requestedCharSetId = options.charSetId;
            record.optionOwner = &owner_;
            opened_ = true;
            entry_.streamOpen(block_, options.fileType, nullptr, &record, context_);
        }

        void readToEnd()
        {
            int silentReads = 0;
            while (!session_.documentEnded) {
                const std::uint64_t callsBefore = session_.calls;
                errno = 0;
                const std::uint16_t result = entry_.streamRead(block_, context_);
                const bool outOfMemory = errno == ENOMEM;
                tell([this, result] { session_.sink.readReturned(result); });
                silentReads = session_.calls == callsBefore ? silentReads + 1 : 0;
                if (silentReads == kMostSilentReads)
                    giveUp(outOfMemory);
            }
        }

        /// Tells the sink what the host itself has to tell; what it throws is kept like that of a
        /// routine.
        template <typename Call> void tell(Call call)
        {
            try {
                call();
            } catch (...) {
                session_.failure = std::current_exception();
                throw;
            }
        }

        /// Ends a document of which nothing more is told. A read does not say why it came back
        /// without a call; when its blocks were refused, the system has said so.
        [[noreturn]] void giveUp(bool outOfMemory) const
        {
            if (outOfMemory)
                throw std::bad_alloc();
            throw ModuleError("module '" + module_.path()
                + "' answers wrongly: it reads on without ending the document");
        }

        const EntryPoints& entry_;
        const Module& module_;
        DocumentStream& stream_;
        HostSession& session_;
        HtmlFilterContext* context_ = nullptr;
        StreamBlock* block_ = nullptr;
        OptionOwner owner_ = {{}, this};
        bool opened_ = false;
    };

    /// Stands for an exception of another language, which can't be kept.
    struct OtherException { };

    /// Makes the call; keeps what it throws, unless something has been kept before.
    template <typename Call> void attempt(std::exception_ptr& failure, Call call)
    {
        try {
            call();
        } catch (...) {
            if (failure != nullptr)
                return;
            failure = std::current_exception();
            if (failure == nullptr)
                failure = std::make_exception_ptr(OtherException());
        }
    }

    /// Tells a failure of the filter; one that no filter has is the module's.
    Outcome outcomeOf(const std::exception_ptr& failure, const Module& module)
    {
        std::string thrown;
        try {
            std::rethrow_exception(failure);
        } catch (const zorvan::Exception& exception) {
            const char* message = exception.message();
            return {Outcome::Kind::Exception, exception.code(), message == nullptr ? "" : message};
        } catch (const UTBailOut& bailOut) {
            return {Outcome::Kind::BailOut, bailOut.code, {}};
        } catch (const AbandonError& abandon) {
            return {Outcome::Kind::Abandoned, abandon.code, {}};
        } catch (const std::bad_alloc&) {
            return {Outcome::Kind::Exception, kOutOfMemory, "out of memory"};
        } catch (const ModuleError&) {
            throw;
        } catch (...) {
            thrown = describeThrown();
        }
        module.failForThrown(thrown);
    }

    /// True for what ends a conversion in order: the filter's own request, or no memory.
    bool isOutcome(const std::exception_ptr& hostFailure)
    {
        try {
            std::rethrow_exception(hostFailure);
        } catch (const AbandonError&) {
            return true;
        } catch (const std::bad_alloc&) {
            return true;
        } catch (...) {
            return false;
        }
    }

} // namespace

Outcome convert(
    const Module& module, DocumentStream& stream, const ConversionOptions& options, HostSink& sink)
{
    HostSession session{sink, options.stopEvery};
    Document document(module, stream, session);
    std::exception_ptr failure;
    attempt(failure, [&] { document.run(options); });
    attempt(failure, [&] { document.closeStream(); });
    attempt(failure, [&] { document.takeDown(); });
    attempt(failure, [&] { document.free(); });
    // A failure of the host itself counts for more than what the module made of it.
    if (session.failure != nullptr && !isOutcome(session.failure))
        std::rethrow_exception(session.failure);
    if (stream.readFailure() != 0)
        throw ReadError(std::strerror(stream.readFailure()));
    if (session.failure != nullptr)
        failure = session.failure;
    const Outcome outcome = failure == nullptr ? Outcome{} : outcomeOf(failure, module);
    sink.conversionEnded(outcome);
    return outcome;
}

} // namespace host
