#ifndef KTX_DBG_API_H
#define KTX_DBG_API_H

/// \file
/// The macros of the logging library's interface.

/// KTX_DBG_API marks a class of the logging library. On Windows it is empty: the list of ordinals
/// alone exports, so that neither the vtable nor a name gets into the export table.
#if defined(_WIN32)
#define KTX_DBG_API
#else
#define KTX_DBG_API __attribute__((visibility("default")))
#endif

/// KTX_DBG_PRINTF lets the compiler check printf arguments against their format. Both numbers count
/// from 1, and the object of a member function is number 1.
#if defined(__MINGW32__)
#define KTX_DBG_PRINTF(formatNumber, firstNumber) \
  __attribute__((format(ms_printf, formatNumber, firstNumber)))
#elif defined(__clang__)
#define KTX_DBG_PRINTF(formatNumber, firstNumber) \
  __attribute__((format(printf, formatNumber, firstNumber)))
#elif defined(__GNUC__)
#define KTX_DBG_PRINTF(formatNumber, firstNumber) \
  __attribute__((format(gnu_printf, formatNumber, firstNumber)))
#else
#define KTX_DBG_PRINTF(formatNumber, firstNumber)
#endif

#endif  // KTX_DBG_API_H
