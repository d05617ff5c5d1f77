#pragma once

#include "Tools/inspect/AnswerWriter.h"
#include "Tools/inspect/Arguments.h"

#include <QHash>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <type_traits>

namespace quillary::inspect {

/// An operation with its arguments read: `run` does the work, as often as asked and timed alone; `write` puts the
/// members of the answer into an open object.
struct Prepared {
    std::function<void()> run;
    std::function<void(AnswerWriter&)> write;
};

/// Reads the arguments of a request. What it gives is not run if the arguments hold an error by then.
using Operation = std::function<Prepared(Arguments&)>;

using OperationTable = QHash<QString, Operation>;

/// Binds a computation to the writer of its result.
template <typename Compute, typename Write>
Prepared prepared(Compute compute, Write write) {
    using Value = std::invoke_result_t<Compute&>;
    auto result = std::make_shared<std::optional<Value>>();
    return {
        [compute = std::move(compute), result]() mutable {
            result->reset();
            result->emplace(compute());
        },
        [write = std::move(write), result](AnswerWriter& answer) { write(answer, **result); },
    };
}

} // namespace quillary::inspect
