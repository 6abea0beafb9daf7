#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace Qor::Chart::Host {

template <class Signature>
class Callback;

/// What a program has set to be called; empty at first, and then not to be called. It may put another in its own place
/// while it runs, and remembers its state from call to call.
template <class Result, class... Arguments>
class Callback<Result(Arguments...)> {
public:
    Callback& operator=(std::function<Result(Arguments...)> p_call) {
        _call = std::make_shared<std::function<Result(Arguments...)>>(std::move(p_call));
        return *this;
    }

    explicit operator bool() const noexcept { return _call && *_call; }

    Result operator()(Arguments... p_arguments) const {
        auto const call = _call;
        return (*call)(p_arguments...);
    }

private:
    std::shared_ptr<std::function<Result(Arguments...)>> _call;
};

} // namespace Qor::Chart::Host
