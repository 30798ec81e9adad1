#!/usr/bin/env bash
# Lines of tests against lines of the code they test, per subsystem and in total.
#
# Every line counts, blank and comment lines too, of C++ sources (.cpp, .h), Python helpers (.py)
# and CMakeLists.txt files that git tracks or would track (ignored build trees are left out).
# Tests: all such files under a tests/ folder of each library and program folder, support headers
# and test CMakeLists included (the notes in Markdown are not). Code: the rest of those folders,
# the screenshot programs and the toolkit's benchmark among it, except the compiled-in tables that
# tools/ generates (toolkit/src/ElementTables.cpp, toolkit/src/SpacegroupTable.cpp and
# wizards/JournalTable.cpp).
set -euo pipefail
cd "$(dirname "$0")/.."

lines_of() {
    # The files on standard input, one a line; prints the sum of their lines.
    local total=0 n
    while IFS= read -r file; do
        n=$(wc -l <"$file")
        total=$((total + n))
    done
    echo "$total"
}

files_of() {
    git ls-files -co --exclude-standard -- "$1" |
        grep -E '(\.(cpp|h|py)|/CMakeLists\.txt)$' |
        grep -Ev '^(toolkit/src/(ElementTables|SpacegroupTable)|wizards/JournalTable)\.cpp$' || true
}

printf '%-12s %7s %7s %6s\n' folder tests code ratio
all_tests=0
all_code=0
for folder in libCif foundation application checker toolkit ciftools wizards visualiser; do
    [ -d "$folder" ] || continue
    tests=$(files_of "$folder" | grep '/tests/' | lines_of)
    code=$(files_of "$folder" | grep -v '/tests/' | lines_of)
    printf '%-12s %7d %7d %5d%%\n' "$folder" "$tests" "$code" $((code ? 100 * tests / code : 0))
    all_tests=$((all_tests + tests))
    all_code=$((all_code + code))
done
printf '%-12s %7d %7d %5d%%\n' total "$all_tests" "$all_code" $((100 * all_tests / all_code))
