// call_pairs.h
// Whether the calls that the simulated library has recorded belong together: what is opened is closed, and so on.
#pragma once

#include <string>
#include <vector>

// What is wrong with the record since it was cleared, a sentence each: a start-up without its shutdown, a camera that
// stays open or is closed twice, frames that are not revoked before their camera is closed, a call with a handle that
// is closed, a call that has not returned. Only for a time at which no device lives. With faults in calls, a refused
// revocation counts as one.
std::vector<std::string> DefectsOfRecordedCalls();

// The newest lines of the record, and those of calls that have not returned: for whoever has to say what hangs.
std::vector<std::string> LastRecordedCalls(std::size_t count);
