// A large zero-filled buffer whose pages come from the operating system on first touch, so that
// creating an Evaluator for each of many search threads costs nothing until it evaluates.
#pragma once

#include <cstddef>

class ZeroedBuffer {
  public:
    explicit ZeroedBuffer(size_t bytes);
    ~ZeroedBuffer();
    ZeroedBuffer(const ZeroedBuffer&) = delete;
    ZeroedBuffer& operator=(const ZeroedBuffer&) = delete;

    // Page-aligned, hence 64-byte aligned.
    void* data() const { return memory; }
    size_t size() const { return bytes; }
    // Every byte reads as zero again; all pages are resident afterwards.
    void clear();

  private:
    void* memory;
    size_t bytes;
};
