// view_camera.h
// One camera of view, with its pictures.
#pragma once

#include "view/cameras/camera_thread.h"
#include "view/pictures/picture_desk.h"

namespace Kelcam {

// The camera ends before the desk to which it hands its frames.
struct ViewCamera {
  ViewCamera(std::size_t index, const Options& options, const CameraChoice& choice, const Module& module,
             MessageLog& log, BandwidthLink* link, PictureDesk::Report report)
      : desk(std::move(report)), thread(index, options, choice, module, log, link, desk) {}

  PictureDesk desk;
  CameraThread thread;
};

}  // namespace Kelcam
