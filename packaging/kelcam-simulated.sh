#!/bin/sh
# kelcam-simulated: kelcam with simulated cameras in place of those on the network.
folder=$(dirname "$(readlink -f "$0")")/../lib/kelCameraVimba
LD_LIBRARY_PATH=$folder/simulator${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH} exec "$folder/kelcam" "$@"
