extern "C" int PlatformTestDependencyFunction();

extern "C" {
int PlatformTestFunction() { return PlatformTestDependencyFunction() + 35; }
int PlatformTestVariable = 5;
}
