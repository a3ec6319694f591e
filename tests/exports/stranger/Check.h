#ifndef STRANGER_CHECK_H
#define STRANGER_CHECK_H

/// Counts a check, and prints it when it does not hold.
void check(bool holds, char const* what, char const* file, int line);
/// Prints the counts; 0 when every check held.
int finishChecks();

#define CHECK(what) check((what), #what, __FILE__, __LINE__)
#define CHECK_THROWS(type, what)                \
  do {                                          \
    bool isCaught = false;                      \
    try {                                       \
      what;                                     \
    } catch (type const&) {                     \
      isCaught = true;                          \
    }                                           \
    check(isCaught, #what, __FILE__, __LINE__); \
  } while (false)

#endif  // STRANGER_CHECK_H
