#pragma once
#include <limits>

namespace CLI {
class Validator;
}

namespace vldv::cli {

/// Limits of numbers on the command line. A refusal says in words what is allowed: "expected a whole number, 0 or more,
/// not "-1"". None takes infinities or what is no number.
CLI::Validator whole_number(long long least, long long most = std::numeric_limits<int>::max());
CLI::Validator number_at_least(double least);
CLI::Validator number_above(double limit);

} // namespace vldv::cli
