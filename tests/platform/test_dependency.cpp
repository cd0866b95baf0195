extern "C" int PlatformTestDependencyFunction() { return 7; }
