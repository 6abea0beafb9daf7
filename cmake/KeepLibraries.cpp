// Part of every program in the sanitizer build: libraries stay loaded until the end, so that a leak report can name the
// library that allocated. Without it, what an unloaded OpenGL driver kept could not be told from a leak of ours.
extern "C" __attribute__((visibility("default"))) int dlclose(void*) {
    return 0;
}
