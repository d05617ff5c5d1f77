#pragma once

#include <memory>

namespace quillary {

/// What can be referred to weakly, whoever owns it: a widget that its parent owns and that implements an interface of
/// this layer, for instance. Main thread only.
class WeakTarget {
public:
    WeakTarget(const WeakTarget&) = delete;
    WeakTarget& operator=(const WeakTarget&) = delete;

protected:
    WeakTarget() = default;
    ~WeakTarget() = default;

private:
    template <typename T>
    friend class WeakPointer;

    std::shared_ptr<const bool> m_life = std::make_shared<const bool>(true);
};

/// A pointer to a WeakTarget that is null once the target has gone.
template <typename T>
class WeakPointer {
public:
    WeakPointer() = default;

    WeakPointer(T* target) : m_target(target) {
        if (target) {
            m_life = static_cast<const WeakTarget*>(target)->m_life;
        }
    }

    T* get() const { return m_life.expired() ? nullptr : m_target; }

    operator T*() const { return get(); }

    T* operator->() const { return get(); }

private:
    T* m_target = nullptr;
    std::weak_ptr<const bool> m_life;
};

} // namespace quillary
