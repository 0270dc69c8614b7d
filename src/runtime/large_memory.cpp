#include "runtime/large_memory.h"

#include <new>
#ifdef __linux__
#include <sys/mman.h>
#endif

namespace velorn {

namespace {

constexpr std::align_val_t alignment{std::size_t{2} * 1024 * 1024};

} // namespace

void LargeMemory::Free::operator()(float* memory) const { ::operator delete(memory, alignment); }

std::unique_ptr<float[], LargeMemory::Free> LargeMemory::floats(std::size_t count) {
    const std::size_t bytes = count * sizeof(float);
    void* memory = ::operator new(bytes, alignment);
#ifdef __linux__
    (void)madvise(memory, bytes, MADV_HUGEPAGE); // where it is refused, small pages do
#endif
    return std::unique_ptr<float[], Free>(static_cast<float*>(memory));
}

} // namespace velorn
