// A shared library that is no Qt plug-in at all.
extern "C" __attribute__((visibility("default"))) int plainFunction() {
    return 1;
}
