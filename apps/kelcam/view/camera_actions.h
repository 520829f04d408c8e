// camera_actions.h
// What pages may change of a camera.
#pragma once

#include <memory>
#include <string>

#include "view/http/http_exchange.h"
#include "view/view_camera.h"

namespace Kelcam {

// Whether there is an action of this name: the last part of its path.
bool IsAction(const std::string& name);

// Hands it to the camera's thread and answers when it is done. Throws RefusedRequest for a body that does not fit.
void RunAction(const std::string& name, const std::shared_ptr<HttpExchange>& exchange, ViewCamera& camera);

}  // namespace Kelcam
