# Shared by the scripts that run the examples. Source it from the root folder.

failures=0

# expect WHAT LOG COMMAND...: WHAT is true if the command succeeds; its output is kept in build/logs/LOG.log.
expect() {
    local what=$1 log=build/logs/$2.log
    shift 2
    mkdir -p build/logs
    if "$@" > "$log" 2>&1; then
        printf '  ok      %s\n' "$what"
    else
        printf '  FAILED  %s\n' "$what"
        tail -n 15 "$log" | sed 's/^/          /'
        failures=$((failures + 1))
    fi
}

# expect_readme EXAMPLE WAY SIMULATOR PROGRAM...: the example prints what its README shows.
expect_readme() {
    expect "$1, $2: prints what its README shows" "example-$1-${2// /-}" \
        scripts/run-example.py "examples/$1/README.md" "${@:3}"
}

# program_of EXAMPLE
program_of() { echo "morquil-${1//_/-}"; }
