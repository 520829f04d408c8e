@echo off
rem kelcam-simulated: kelcam with simulated cameras in place of those on the network.
setlocal
set "PATH=%~dp0simulator;%PATH%"
"%~dp0kelcam.exe" %*
