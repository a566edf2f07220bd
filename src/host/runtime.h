// Starting the Java runtime, and giving up a start.
#pragma once

namespace vantiro {

// Destroys a machine that the library created and leaves the host's own alone. Afterwards the
// runtime counts as not started.
void abandon_machine();

}  // namespace vantiro
