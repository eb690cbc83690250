// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <optional>
#include <utility>

namespace velmora::base {

/// Why an operation failed, in words that can be shown to the user. What the log says of it is written where
/// it happens, because only there is known what the log must not name.
struct Failure {
  QString message;
};

/// What an operation that can fail gives: a value, or why there is none. `Result<>` has no value: the
/// operation succeeded, or why it did not. `return {};` (or a value) succeeds, `return Failure{"…"};` fails.
/// `Reason` is Failure, or, where a caller has to know more, a type of its own that has a message, too.
template <typename Value = void, typename Reason = Failure>
class [[nodiscard]] Result {
 public:
  Result(Value value) : value_(std::move(value)) {}
  Result(Reason failure) : failure_(std::move(failure)) {
    if (failure_.message.isNull()) failure_.message = QStringLiteral("unknown error");
  }

  bool ok() const noexcept { return value_.has_value(); }
  explicit operator bool() const noexcept { return ok(); }

  /// Only of a success.
  const Value& value() const& { return value_.value(); }
  Value&& value() && { return std::move(value_).value(); }
  const Value& operator*() const& { return value_.value(); }
  const Value* operator->() const { return &value_.value(); }
  Value valueOr(Value otherwise) const { return value_.value_or(std::move(otherwise)); }

  /// In words for the user; a null string after a success.
  const QString& error() const noexcept { return failure_.message; }
  const Reason& failure() const noexcept { return failure_; }

 private:
  std::optional<Value> value_;
  Reason failure_;
};

template <typename Reason>
class [[nodiscard]] Result<void, Reason> {
 public:
  Result() = default;
  Result(Reason failure) : ok_(false), failure_(std::move(failure)) {
    if (failure_.message.isNull()) failure_.message = QStringLiteral("unknown error");
  }

  bool ok() const noexcept { return ok_; }
  explicit operator bool() const noexcept { return ok_; }

  /// In words for the user; a null string after a success.
  const QString& error() const noexcept { return failure_.message; }
  const Reason& failure() const noexcept { return failure_; }

 private:
  bool ok_ = true;
  Reason failure_;
};

}  // namespace velmora::base
