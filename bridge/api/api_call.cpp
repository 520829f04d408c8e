// api/api_call.cpp
// The steps of every API call: start-up check, argument check, the call itself, result.
#include "api/api_call.h"

namespace Bridge {

VmbError_t ApiCall::Check() const {
  return m_needs_startup && !m_system.Started() ? VmbError_t{VmbErrorApiNotStarted} : m_arguments.Error();
}

}  // namespace Bridge
