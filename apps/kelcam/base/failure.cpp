// failure.cpp
// What became of an error or an exception.
#include "base/failure.h"

#include <new>

#include "base/utf8.h"
#include "nboard.h"

namespace Kelcam {

std::string Reason::Text() const {
  std::string text;
  for (const std::string& message : messages) text.append("  ").append(message).append("\n");
  if (!why.empty()) text.append("why: ").append(why).append("\n");
  if (!to_do.empty()) text.append("to do: ").append(to_do).append("\n");
  if (has_more) text.append(kMoreMessages).append("\n");
  return text;
}

std::string Fault::Sentence(const std::string& label) const {
  return (code == kNoCode ? std::string("error") : "error " + std::to_string(code)) + ": " + label + text;
}

Fault FaultOf(const BError& error) { return {error.ErrorCode(), Utf8(error.Message())}; }

Fault FaultOfCurrentException() {
  try {
    throw;
  } catch (const Failure& failure) {
    return failure.What();
  } catch (const std::bad_alloc&) {
    return {Fault::kNoCode, "out of memory"};
  } catch (const std::exception& exception) {
    return {Fault::kNoCode, exception.what()};
  } catch (const BError& error) {
    return FaultOf(error);
  } catch (NBoard::Exception exception) {
    const int code = static_cast<int>(exception);
    if (exception != NBoard::Exception::eWrongImageKind) return {code, "the driver reports an error without a text"};
    return {code, "the driver does not deliver this kind of picture"};
  }
}

}  // namespace Kelcam
