#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace navro {

// Sets an environment variable (or unsets it, for a null value) until the end of the scope, then
// puts back what the process had, so that no test leaks its environment into the next.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const char* value) : name_(name)
    {
        if (const char* previous = std::getenv(name))
            previous_ = previous;
        set(value);
    }
    ~ScopedEnvironment() { set(previous_ ? previous_->c_str() : nullptr); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

    void set(const char* value) const
    {
        if (value)
            ::setenv(name_.c_str(), value, 1);
        else
            ::unsetenv(name_.c_str());
    }

private:
    std::string name_;
    std::optional<std::string> previous_;
};

} // namespace navro
