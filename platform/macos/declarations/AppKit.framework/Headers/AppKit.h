// Our own declarations of what this program uses of AppKit, after its public documentation.
#pragma once
#include <AppKit/NSApplication.h>
#include <AppKit/NSImage.h>
#include <AppKit/NSScreen.h>
#include <AppKit/NSWorkspace.h>
