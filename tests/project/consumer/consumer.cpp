// SPDX-License-Identifier: Apache-2.0
#include <oc/oc.h>

int main() {
  const rzOCAlphabet alphabet;
  return alphabet.numChars() == 0 && alphabet.isCompiled() ? 0 : 1;
}
