#!/usr/bin/env bash
# Checks the exported headers by themselves: each compiles alone, without a warning, with GCC and with clang parsing as
# MSVC does; and none uses an extension of GCC outside the headers that hold the macros for it.
set -eu
cd "$(dirname "$0")/.."
macros='KTX_TIM_Api.h|KTX_TIM_ThreadAnnotations.h|KTX_DBG_Api.h|KTX_RCV_Api.h'
if grep -rnE '__attribute__|__builtin_|__extension__|__typeof|#pragma GCC|__int128' include | grep -vE "/($macros):"; then
  echo "an extension of GCC in an exported header"
  exit 1
fi
# In this mode clang does not define what the atomics of GCC's standard library ask for.
missing="-D__GCC_ATOMIC_TEST_AND_SET_TRUEVAL=1"
for type in BOOL CHAR CHAR8_T CHAR16_T CHAR32_T WCHAR_T SHORT INT LONG LLONG POINTER; do
  missing="$missing -D__GCC_ATOMIC_${type}_LOCK_FREE=2"
done
export missing
check_header() {
  local rules="-std=c++17 -fsyntax-only -Iinclude -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -x c++"
  echo "#include \"$1\"" | g++ $rules - && echo "#include \"$1\"" |
    clang++-14 $rules -fms-compatibility -fms-compatibility-version=19.30 -fms-extensions $missing '-Wno-error=#warnings' '-Wno-#warnings' - || {
      echo "$1 does not compile by itself"
      return 1
    }
}
export -f check_header
(cd include && find KTX -name '*.h' | sort) | xargs -P "$(nproc)" -I{} bash -c 'check_header {}'
