# Shell functions that ./run and ./test share: packages and builds. Sourced; needs $root. What they
# have to say goes to standard error.

. "$root/cmake/wine.sh"

# What a script run needs; the tests need more (see ./test).
run_packages='cmake ninja-build g++-mingw-w64-x86-64-posix mingw-w64-tools wine64 libwine libwine-dev
  googletest nlohmann-json3-dev'
x86_packages=g++-mingw-w64-i686-posix

# own_build_folder: makes build/, or ends with a message where it isn't ours: Wine takes no prefix of
# another user.
own_build_folder() {
  if mkdir -p "$root/build" 2>/dev/null && [ -O "$root/build" ] && [ -w "$root/build" ]; then
    return 0
  fi
  place="$root/build"
  [ -e "$place" ] || place=$root
  echo "$place belongs to $(stat -c %U "$place"), not to $(id -un):" \
    "run this as that user, or in a clone of your own." >&2
  exit 1
}

# need_packages NAME...: installs the Debian packages that are missing.
need_packages() {
  missing=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null |
    awk -v wanted="$*" '
      $1 == "installed" { found[$2] = 1 }
      END { n = split(wanted, names, " ")
            for (i = 1; i <= n; i++) if (!(names[i] in found)) print names[i] }')
  [ -z "$missing" ] && return 0
  echo "Installing" $missing "..." >&2
  as_root=
  if [ "$(id -u)" -ne 0 ]; then
    as_root=sudo
    command -v sudo >/dev/null || {
      echo "Only root can install packages: run this as root, or install them first." >&2
      return 1
    }
  fi
  $as_root apt-get update -qq >&2 &&
    $as_root env DEBIAN_FRONTEND=noninteractive \
      apt-get install -y -qq --no-install-recommends $missing >&2
}

# build_tree PRESET [TARGET...]: configures once and builds; silent unless something goes wrong or
# takes long.
build_tree() {
  preset=$1
  tree="$root/build/$preset"
  shift
  if [ ! -f "$tree/build.ninja" ]; then
    echo "Building build/$preset, which takes a while the first time ..." >&2
    if ! (cd "$root" && cmake --preset "$preset") >"$root/build/configure.log" 2>&1; then
      cat "$root/build/configure.log" >&2
      rm -f "$tree/CMakeCache.txt"
      return 1
    fi
  fi
  ninja -C "$tree" --quiet "$@" >"$tree/build.log" 2>&1 || {
    cat "$tree/build.log" >&2
    return 1
  }
}

# setup_runtime PREFIX: everything that running a script under that prefix needs; see wine.sh.
setup_runtime() {
  wine_need_prefix "$1" || return 1
  dll=Veldmark2.dll
  tree=windows-x64
  case $1 in sandbox*) dll=Veldmark2Sandbox.dll ;; esac
  case $1 in *-x86) tree=windows-x86 ;; esac
  [ ! -f "$root/build/$tree/$dll" ] || wine_register "$1" "$root/build/$tree/$dll"
}
