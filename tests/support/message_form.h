// message_form.h
// What a diagnostic message must look like, whoever reports it and whatever else is reported at the same time.
#pragma once

#include <string>

// What is wrong first with the text of a message: the title, the numbers of its lines, their times and steps, the last
// line. Empty when the message is whole.
std::string DefectOf(const std::wstring& message);

// "Camera 1 (Vimba_...) : Thread ID = 7 : Snap" as its parts.
struct MessageTitle {
  std::wstring camera;          // the identifier; empty without a prefix or before the camera is open
  unsigned long thread_id = 0;  // 0 without a prefix
  std::wstring label;
};
MessageTitle TitleOf(const std::wstring& message);
