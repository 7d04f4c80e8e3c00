#pragma once

#include <string_view>

namespace navro {

// Where the watcher's lines go: standard output, written whole.
class LineOutput {
public:
    virtual ~LineOutput() = default;
    // False when the reader is gone.
    virtual bool write(std::string_view line) = 0;
};

class StandardOutput final : public LineOutput {
public:
    bool write(std::string_view line) override;
};

} // namespace navro
