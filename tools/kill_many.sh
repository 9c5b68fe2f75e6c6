#!/bin/sh
# Kills a program that changes a base, many times, and checks the base after each kill: a program that stores and
# deletes (store), or a download (fetch).
# tools/kill_many.sh [BUILD_FOLDER [ROUNDS [store|fetch]]]
set -eu
build=${1:-build/dev}
case ${3:-store} in
  store) test=tests/store/store_test filter='*Killed.*' ;;
  fetch) test=tests/cli/ui/cli_ui_test filter='FetchKilled.*' ;;
  *) sed -n 2,4p "$0" >&2; exit 2 ;;
esac
FORUM_KILL_ROUNDS=${2:-1000} exec "$build/$test" --gtest_filter="$filter"
