#include "filter/heap_block.h"

#include "support/process_heap.h"

HeapBlock::HeapBlock(std::size_t size)
    : block_(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, size))
{
}

HeapBlock::~HeapBlock() { HeapFree(GetProcessHeap(), 0, block_); }
