#pragma once

#include "filter/entry_table.h"
#include "filter/html_filter_context.h"

/// The exported entry points. Types, arguments and answers: filter/entry_table.h.
#define FILTER_EXPORT __attribute__((visibility("default")))

extern "C" {

FILTER_EXPORT void VwGetRtns(void** table, std::uint16_t version);
FILTER_EXPORT std::uint16_t VwGetInfo(void* result, std::uint16_t code);
FILTER_EXPORT HtmlFilterContext* VwAllocProc();
FILTER_EXPORT void VwFreeProc(HtmlFilterContext* context);
FILTER_EXPORT void VwLocalUp(
    HostStream* hostStream, StreamBlock** stream, HtmlFilterContext* context);
FILTER_EXPORT void VwLocalDown(StreamBlock* stream, HostStream** hostStream);
FILTER_EXPORT void VwSetUser(void* userData1, void* userData2, HtmlFilterContext* context);
FILTER_EXPORT void VwSetSoRtn(std::int16_t routineId, void* routine, HtmlFilterContext* context);
FILTER_EXPORT std::uint16_t VwGetData(void* destination, HtmlFilterContext* context);
FILTER_EXPORT std::uint16_t VwSetData(const void* source, HtmlFilterContext* context);
FILTER_EXPORT std::uint16_t VwDoSpecial(void* unused, void** interfaceRecord);

FILTER_EXPORT std::uint16_t VwStreamOpen(StreamBlock* stream, std::uint16_t fileId, void* reserved,
    OpenRecord* openRecord, HtmlFilterContext* context);
FILTER_EXPORT std::uint16_t VwStreamSection(StreamBlock* stream, HtmlFilterContext* context);
FILTER_EXPORT std::uint16_t VwStreamRead(StreamBlock* stream, HtmlFilterContext* context);
FILTER_EXPORT std::uint16_t VwStreamTell(StreamBlock* stream, HtmlFilterContext* context);
FILTER_EXPORT std::uint16_t VwStreamSeek(StreamBlock* stream, HtmlFilterContext* context);
FILTER_EXPORT std::uint16_t VwStreamClose(StreamBlock* stream, HtmlFilterContext* context);

FILTER_EXPORT void IOInitializeHtml(void* unused, void* embedBlock);
FILTER_EXPORT std::uint32_t IOParseHtml(void* unused, void* embedBlock);
FILTER_EXPORT void IODestroyHtml(void* unused, void* embedBlock);

FILTER_EXPORT std::uintptr_t SODummy();
FILTER_EXPORT std::uintptr_t VwGetSectionDataFunc();
FILTER_EXPORT std::uintptr_t VwSetSectionDataFunc();
FILTER_EXPORT std::uintptr_t VwStreamReadRecord();

} // extern "C"
