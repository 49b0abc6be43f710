// Puts a program-wide variable back at the end of its life.
#pragma once

#include <utility>

namespace tonewright {

//     const PutBack former(TheShellWindow);
template <typename Value> struct PutBack {
    Value &variable;
    Value former;

    explicit PutBack(Value &variable) : variable(variable), former(variable) {}
    ~PutBack() { variable = std::move(former); }
    PutBack(const PutBack &) = delete;
    PutBack &operator=(const PutBack &) = delete;
};

} // namespace tonewright
