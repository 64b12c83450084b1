#pragma once

class IEyeDiagramData;

namespace kv {

// Copies every value the interface carries from `from` into `to`, through
// its get and set operations only, so that any implementation of the
// interface can be edited and written back.
void CopyStimulusValues(IEyeDiagramData& from, IEyeDiagramData& to);

}  // namespace kv
