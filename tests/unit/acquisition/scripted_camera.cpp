// scripted_camera.cpp
// The parts of one camera's acquisition, put together as a device does it, on the scripted library.
#include "unit/acquisition/scripted_camera.h"

#include "acquisition/module_threads.h"

ScriptedCamera::ScriptedCamera() {
  Library().Reset();
  const VmbHandle_t handle = ScriptedLibrary::Handle(7);
  Library().SetInteger(handle, "PayloadSize", kPayloadBytes);
  camera.Adopt(handle);
  camera.SetNames(L"DEV_7", L"Vimba_Scripted_7");
}

// At the end of a test no thread is on its way out: the leak sanitizer would not find what belongs to one.
ScriptedCamera::~ScriptedCamera() { ModuleThreads().WaitForAll(); }

std::vector<std::wstring> ScriptedCamera::Lines(const std::wstring& title_end) const {
  const std::vector<std::wstring> messages = output.Diagnostics(title_end);
  if (messages.size() != 1) return {std::to_wstring(messages.size()) + L" messages"};
  std::vector<std::wstring> lines = LinesOf(messages.front());
  lines.erase(lines.begin());
  return lines;
}

BError ScriptedCamera::Pop() {
  BSmartRef<BFrameQueue::BFrame> frame;
  return queue.Pop(frame, 0);
}

void ScriptedCamera::IgnoreFrame(VmbHandle_t /*camera*/, VmbFrame_t* /*frame*/) {}

void ScriptedCamera::OnLostFrame() { heard.emplace_back("lost frame"); }

void ScriptedCamera::BeforeAcquisition(BLogCollector& /*log*/) { heard.emplace_back("before"); }

void ScriptedCamera::AfterAcquisition(std::int32_t snap_error, BLogCollector& /*log*/) {
  heard.push_back("after " + std::to_string(snap_error));
}
