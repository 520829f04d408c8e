// help_texts.h
// What --help prints before and after the options.
#pragma once

namespace Kelcam {

inline constexpr const char* kDescription =
    "kelcam drives a camera through a camera driver module, from the command line.\n";

inline constexpr const char* kFooter = R"(Examples:
  kelcam --simulated snap --camera 1 -o picture.png
  kelcam list --long
  kelcam info --profile colour.ini
  kelcam snap --profile colour.ini -o picture.png
  kelcam snap --profile colour.ini --set exposure=12.5ms --set gain=2x -o bright.png
  kelcam snap --profile mono.ini -n 10 --mode continuous -o "run/%d.pgm"
  kelcam snap --profile left.ini --profile right.ini --link -n 10 -o "%c-%d.png"
  kelcam snap --profile mono.ini -n 1000 --interval 60 --no-clobber -o "%04d-%t.tif"
  kelcam view --profile left.ini --profile right.ini
  kelcam --log messages.txt live --profile mono.ini --seconds 10
  kelcam check --anonymous -o report.txt
  kelcam --simulated=lost-packets snap --profile mono.ini -o picture.png
"kelcam snap --help" has the options of snap, and so on.

A profile is an ini file that says which camera to open and how to set it up. The smallest is
  API = Vimba
  Init.Method = Serial
  Serial.Number = 50-0536953957
with the serial number at the end of the camera's line in "kelcam list". The driver writes
the camera's identifiers back to it, so keep one profile per camera. Commented examples are
in apps/kelcam/profiles of the sources; docs/profile.md has every key.

Results go to standard output, notices and errors to standard error.
Exit code: 0 done, 1 the camera or an image failed, 2 wrong usage, 130 stopped by Ctrl-C
(the camera is closed properly; a second Ctrl-C ends the program at once).)";

inline constexpr const char* kCommandFooter =
    "\"kelcam --help\" has the global options, examples and what a profile is.";

}  // namespace Kelcam
