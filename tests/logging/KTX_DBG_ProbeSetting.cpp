// The setting that the probe brings along.

#if defined(_WIN32)
#define EXPORTED __declspec(dllexport)
#else
#define EXPORTED __attribute__((visibility("default")))
#endif

extern "C" EXPORTED char const KTX_LOG_DEFAULT[];
char const KTX_LOG_DEFAULT[] = "Early=off,Time=3,*=6";
