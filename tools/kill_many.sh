#!/bin/sh
# Kills a program that changes a base, many times, and checks the base after each kill.
# tools/kill_many.sh [BUILD_FOLDER [ROUNDS]]
set -eu
build=${1:-build/dev}
FORUM_KILL_ROUNDS=${2:-1000} exec "$build/tests/store/store_test" --gtest_filter='Killed.*'
