#include "eval/zeroed_buffer.h"

#include <sys/mman.h>

#include <cstring>
#include <new>

ZeroedBuffer::ZeroedBuffer(size_t size) : bytes(size) {
    memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE,
                  MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) throw std::bad_alloc();
    // Large pages spare the TLB misses of probing a big table at random; only a hint.
    madvise(memory, bytes, MADV_HUGEPAGE);
}

ZeroedBuffer::~ZeroedBuffer() { munmap(memory, bytes); }

// Writing the zeros keeps every page resident: a search right after a new game must not pay
// for faulting in (and the kernel zeroing) large pages one probe at a time.
void ZeroedBuffer::clear() { std::memset(memory, 0, bytes); }
