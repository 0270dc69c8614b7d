// Memory by the megabyte. The system is asked for large pages where it has them: taking them into use costs a
// small part of what it costs page by page.
#pragma once

#include <cstddef>
#include <memory>

namespace velorn {

struct LargeMemory {
    struct Free {
        void operator()(float* memory) const;
    };
    // Their values are anything. Throws std::bad_alloc where there is no memory.
    static std::unique_ptr<float[], Free> floats(std::size_t count);
};

} // namespace velorn
