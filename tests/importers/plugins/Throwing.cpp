extern "C" __attribute__((visibility("hidden"))) void throwSomething() { throw 42; }
