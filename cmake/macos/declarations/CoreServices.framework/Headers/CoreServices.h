// Our own declarations of what this program uses of CoreServices, after its public documentation: what a key
// writes.
#pragma once
#include <CoreFoundation/CoreFoundation.h>

CF_EXTERN_C_BEGIN

typedef struct UCKeyboardLayout UCKeyboardLayout; /* the bytes of a 'uchr' resource */

enum { kUCKeyActionDown = 0 };
enum { kUCKeyTranslateNoDeadKeysMask = 1 }; /* the bit's own constant is its number, 0 */

/* `modifiers` are the classic ones shifted right by eight. Any thread; the layout is only read. */
CF_EXPORT OSStatus UCKeyTranslate(const UCKeyboardLayout* layout, UInt16 virtualKeyCode, UInt16 keyAction,
                                  UInt32 modifiers, UInt32 keyboardType, OptionBits options,
                                  UInt32* deadKeyState, UniCharCount maximumLength,
                                  UniCharCount* actualLength, UniChar* characters);

CF_EXTERN_C_END
