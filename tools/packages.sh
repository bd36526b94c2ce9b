# Sourced by ./run and ./test: finds out which Debian packages are missing and installs them.
# Nothing here touches the network when everything is in place.

# need_packages NAME...: installs what is missing, as root or through sudo. Without either it
# prints the exact command to run and returns 2.
need_packages() {
    missing=$(missing_packages "$@")
    [ -n "$missing" ] || return 0
    line="apt-get update && apt-get install -y --no-install-recommends$missing"
    if [ "$(id -u)" = 0 ]; then
        as_root=env
    elif command -v sudo >/dev/null 2>&1; then
        as_root='sudo env'
    else
        printf 'These packages are missing. Run as root:\n  %s\n' "$line" >&2
        return 2
    fi
    printf 'Installing:%s\n' "$missing" >&2
    if ! { $as_root apt-get update -q &&
           $as_root DEBIAN_FRONTEND=noninteractive apt-get install -q -y \
               --no-install-recommends $missing; } >&2 </dev/null; then
        printf 'Installing failed. Run as root:\n  %s\n' "$line" >&2
        return 2
    fi
}

# missing_packages NAME...: prints those that are not installed, each after a blank.
missing_packages() {
    installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null) || : # fails for unknown ones
    for name; do
        case "
$installed
" in
            *"
installed $name
"*) ;;
            *) printf ' %s' "$name" ;;
        esac
    done
}

# Headers only, for both hosts: cmake/HeaderPackages.cmake.
header_packages='nlohmann-json3-dev libcli11-dev'
build_packages="g++ cmake ninja-build libpng-dev libjpeg62-turbo-dev libsqlite3-dev libxxhash-dev libseccomp-dev libassimp-dev libstb-dev $header_packages"
test_packages='googletest clang-format libbenchmark-dev ccache lld python3-jsonschema nodejs curl ca-certificates'
sanitizer_packages='clang'
coverage_packages='clang llvm python3'
fuzz_coverage_packages='llvm python3'
tidy_packages='clang-tidy'
valgrind_packages='valgrind'
mutate_packages='python3 git'
hostile_packages='python3'
fault_packages='python3'
power_packages='python3 strace'
batch_packages="$power_packages chromium zsh fish"
farm_packages='slurm-wlm munge parallel snakemake python3-yaml python3-jsonschema'
deb_packages='dpkg-dev file man-db'
zip_packages='unzip'
bench_packages='assimp-utils gltfpack'
win32_build_packages="g++-mingw-w64-x86-64-posix cmake ninja-build $header_packages"
win32_run_packages='wine64 xvfb'
win32_test_packages='googletest xdotool imagemagick ccache lld'
cross_packages='qemu-user-static'
builds_packages='g++-aarch64-linux-gnu g++-i686-linux-gnu g++-s390x-linux-gnu g++-mingw-w64-i686-posix'
