#!/bin/sh
# Unpacks the Java runtime that follows the last line of this script into the current directory.
# The launcher runs it there and then looks for the file "jvm" that the runtime brings.
set -e
PATH=${PATH:+$PATH:}/usr/bin:/bin
tail -n +@PAYLOAD_LINE@ "$0" | tar -xf -
exit 0
