// A place in our sources, for traces. Stands in for std::source_location, which clang 14, the compiler of the
// fuzz targets, doesn't have.
#pragma once

namespace velorn {

struct SourcePlace {
    const char* file = "";
    const char* function = "";
    int line = 0;

    // The place of the caller; as a default argument, that of the function's caller.
    static constexpr SourcePlace current(const char* file = __builtin_FILE(),
                                         const char* function = __builtin_FUNCTION(),
                                         int line = __builtin_LINE()) {
        return {file, function, line};
    }
};

} // namespace velorn
