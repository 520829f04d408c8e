// camera_session.cpp
// One camera, open from construction to destruction.
#include "camera_session.h"

#include <iostream>
#include <new>

#include "nboard.h"
#include "utf8.h"

namespace kelcam {

CameraSession::CameraSession(const Module& module, const MessageLog& log, const std::string& profile_file)
    : m_module(module), m_profile(new BCamProfile(Wide(profile_file))) {
  m_device = m_module.Create(m_profile);
  TellComplaints();
  if (!m_device) throw Failure(WithLastNotices("the camera of the profile " + profile_file + " cannot be opened", log));
}

CameraSession::~CameraSession() {
  m_module.Release(m_device);
  TellComplaints();
}

void CameraSession::TellComplaints() {
  const std::vector<WString>& complaints = m_profile->Complaints();
  for (; m_complaints_told < complaints.size(); ++m_complaints_told) {
    std::cerr << "notice: " << Utf8(complaints[m_complaints_told]) << "\n";
  }
}

Fault FaultOf(const BError& error) { return {error.ErrorCode(), Utf8(error.Message())}; }

Fault FaultOfCurrentException() {
  try {
    throw;
  } catch (const Failure& failure) {
    return failure.What();
  } catch (const std::bad_alloc&) {
    return {0, "no memory left"};
  } catch (const std::exception& exception) {
    return {0, exception.what()};
  } catch (const BError& error) {
    return FaultOf(error);
  } catch (NBoard::Exception exception) {
    const int code = static_cast<int>(exception);
    if (exception != NBoard::Exception::eWrongImageKind) return {code, "the driver reports an error without a text"};
    return {code, "the driver does not deliver this kind of picture"};
  }
}

std::string WithLastNotices(std::string sentence, const MessageLog& log) {
  const std::vector<std::string> notices = log.LastNotices();
  sentence += notices.empty() ? "; the driver gave no reason" : "; the driver's last messages were:";
  for (const std::string& notice : notices) sentence += "\n  " + notice;
  return sentence + "\n(every message: -v shows them, --log FILE keeps them)";
}

}  // namespace kelcam
