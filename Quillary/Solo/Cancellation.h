#pragma once

namespace quillary {

/// One decision to stop what threads are waiting for, made at most once and from any thread.
class Cancellation {
public:
    Cancellation();
    ~Cancellation();

    Cancellation(const Cancellation&) = delete;
    Cancellation& operator=(const Cancellation&) = delete;

    void cancel() const;

    bool isCancelled() const;

    /// Readable from the cancellation on, to be waited for beside other descriptors.
    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

} // namespace quillary
