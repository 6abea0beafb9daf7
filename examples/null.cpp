// The smallest program that uses the library: an empty scene, updated and drawn on a device that only counts. It needs no
// OpenGL, so it also shows whether an installed package can be built against and run.
#include "host/Offscreen.h"

int main() {
    using Qor::Chart::Host::Offscreen;
    Offscreen picture({16, 16}, 0, Offscreen::Device::Recorder);
    picture.Frame();
    return picture.Driver().Statistics().visited == 1 ? 0 : 1;
}
