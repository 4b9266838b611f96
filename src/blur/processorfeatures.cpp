// SPDX-License-Identifier: MIT
#include "processorfeatures_p.h"

#include <algorithm>
#include <iterator>

#ifdef __x86_64__

bool ProcessorFeatures::isPresent(std::string_view feature) noexcept
{
    struct Answer
    {
        std::string_view name;
        bool isPresent;
    };
// The compiler asks for a literal.
#define ANSWER(name)                                                                               \
    Answer                                                                                         \
    {                                                                                              \
        name, __builtin_cpu_supports(name) != 0                                                    \
    }
    static Answer const answers[] = {
        ANSWER("sse2"),
        ANSWER("ssse3"),
        ANSWER("sse4.1"),
        // With it compilers count bits by an instruction that has a name of its own.
        {"sse4.2", __builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("popcnt")},
        ANSWER("pclmul"),
        ANSWER("aes"),
        ANSWER("avx"),
        ANSWER("avx2"),
        ANSWER("bmi"),
        ANSWER("bmi2"),
        ANSWER("fma"),
        ANSWER("avx512f"),
        ANSWER("avx512vl"),
        ANSWER("avx512dq"),
        ANSWER("avx512bw"),
    };
#undef ANSWER
    return std::any_of(std::begin(answers), std::end(answers),
        [feature](Answer const& answer) { return answer.isPresent && answer.name == feature; });
}

#else

bool ProcessorFeatures::isPresent(std::string_view /*feature*/) noexcept
{
    return false;
}

#endif

bool ProcessorFeatures::areAllPresent(std::string_view list, Test test) noexcept
{
    while (!list.empty()) {
        std::string_view const feature = list.substr(0, list.find(','));
        if (!test(feature))
            return false;
        list.remove_prefix(std::min(feature.size() + 1, list.size()));
    }
    return true;
}
