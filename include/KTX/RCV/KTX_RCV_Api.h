#ifndef KTX_RCV_API_H
#define KTX_RCV_API_H

/// \file
/// The macro of the receiver library's interface.

/// \def KTX_RCV_API
/// Marks what other modules may call.

#if defined(_WIN32)
#if defined(KTX_RCV_BUILD)
#define KTX_RCV_API __declspec(dllexport)
#else
#define KTX_RCV_API __declspec(dllimport)
#endif
#else
#define KTX_RCV_API __attribute__((visibility("default")))
#endif

#endif  // KTX_RCV_API_H
