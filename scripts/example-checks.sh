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

# build_as_readme_says EXAMPLE FOLDER: runs the README's compiler line in a copy of the example.
build_as_readme_says() {
    cp -r "examples/$1" "$2"
    (cd "$2" && sh -ex -c "$(grep -E '^(c\+\+|cc) ' README.md)")
}

# build_as_readme_says_on_windows EXAMPLE FOLDER: carries out the README's commands in the folder of an unpacked zip, with
# this system's MinGW-w64.
build_as_readme_says_on_windows() {
    local line commands
    mapfile -t commands < <(sed -n '/^```bat$/,/^```$/{/^```/d;p}' "examples/$1/README.md")
    [ "${#commands[@]}" -gt 0 ] || return 1
    for line in "${commands[@]}"; do
        case $line in
            gcc\ * | windres\ *) (cd "$2" && sh -ex -c "x86_64-w64-mingw32-${line//\\//}") || return 1 ;;
            *) (cd "$2" && wine cmd /c "$line") || return 1 ;;
        esac
    done
}

# program_of EXAMPLE
program_of() { echo "morquil-${1//_/-}"; }
