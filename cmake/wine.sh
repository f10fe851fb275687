# Shell functions around the project's private Wine prefixes; sourced by ./run, ./test and
# wine-exec. Needs $root, the project's folder. Wine runs without a display, never touches the
# user's own prefix or home folder, and ends by itself two minutes after its last program.
#
# The prefix "real" has the server of the real platform registered, "sandbox" the one that works on
# a simulated estate. Both are 64-bit; "real-x86" and "sandbox-x86" run 32-bit programs too, and
# have the 32-bit server.

wine_home="$root/build/wine"
wine_x86="$root/build/wine-x86"
wine64=/usr/lib/wine/wine64
# With random addresses one start in some four hundred fails, since something of the process lies
# where Wine needs a page of its own ("failed to map the shared user data"). Not every container lets
# a process ask for others.
if setarch -R true 2>/dev/null; then wine64="setarch -R $wine64"; fi
wineserver=/usr/lib/wine/wineserver64

# wine_use NAME: points the environment at the prefix of that name.
wine_use() {
  export WINEPREFIX="$wine_home/$1" WINEARCH=win64 WINEDEBUG="${WINEDEBUG:--all}"
  export WINEDLLOVERRIDES='mscoree,mshtml,winemenubuilder.exe=' WINESERVER="$wineserver"
  # Arguments and file names are UTF-8, whatever the caller speaks.
  export HOME="$wine_home/home" LC_ALL=C.UTF-8
  unset DISPLAY WAYLAND_DISPLAY WINEDLLPATH
  case $1 in *-x86*) export WINEDLLPATH="$wine_x86" ;; esac
}

# wine_fetch_x86: sees that the 32-bit DLLs of Wine are in build/wine-x86. Debian's package of them
# can't be installed beside the 64-bit one on a computer like this, and needn't be: with the
# libraries of the 64-bit half beside them, the DLLs alone run 32-bit programs. Call it under
# wine_locked.
wine_fetch_x86() {
  wine_version=$(dpkg-query -W -f '${Version}' libwine:amd64 2>/dev/null) || return 1
  [ "$(cat "$wine_x86/version" 2>/dev/null)" = "$wine_version" ] && return 0
  echo "Fetching the 32-bit half of Wine ..." >&2
  new="$wine_x86.new"
  rm -rf "$new" "$wine_x86" "$wine_home/real-x86" "$wine_home/sandbox-x86"
  mkdir -p "$new/lists/partial" "$new/cache/archives/partial"
  (
    apt() {
      apt-get -qq -oAPT::Architecture=i386 -oAPT::Architectures=i386 -oAPT::Sandbox::User=root \
        -oDir::State::Lists="$new/lists" -oDir::Cache="$new/cache" \
        -oAcquire::Retries=1 -oAcquire::http::Timeout=20 -oAcquire::https::Timeout=20 "$@"
    }
    cd "$new"
    # A source that has nothing for this architecture, or doesn't answer, may not be needed.
    apt update || true
    apt download "libwine=$wine_version" &&
      dpkg-deb --fsys-tarfile libwine_*.deb |
      tar -x --strip-components=5 --wildcards './usr/lib/i386-linux-gnu/wine/i386-windows/*' &&
      # Each prefix holds a copy of them.
      i686-w64-mingw32-strip --strip-debug i386-windows/*.dll i386-windows/*.exe &&
      ln -s /usr/lib/x86_64-linux-gnu/wine/x86_64-unix x86_64-unix &&
      printf '%s\n' "$wine_version" >version &&
      rm -rf lists cache libwine_*.deb &&
      mv "$new" "$wine_x86"
  ) </dev/null >"$root/build/wine-x86.log" 2>&1 || {
    rm -rf "$new"
    grep '^E:' "$root/build/wine-x86.log" >&2
    echo "The 32-bit half of Wine can't be had (see build/wine-x86.log)." >&2
    return 1
  }
}

# wine_keep_server: has a server running that outlives its programs for a while, which saves their
# start-up. Its service processes are started here, away from the caller's streams: they would keep
# a pipe open long after the program that started them.
wine_keep_server() {
  "$wineserver" -k0 </dev/null >/dev/null 2>&1 && return 0
  "$wineserver" -p120 </dev/null >/dev/null 2>&1 || true
  $wine64 wineboot </dev/null >/dev/null 2>&1 || true
}

# wine_path PATH: the Windows path of an absolute one.
wine_path() {
  printf 'Z:%s' "$1" | tr / '\\'
}

# wine_make_prefix NAME [FROM]: makes the prefix where it is missing, as a copy of another if one
# is given. A prefix only gets its name once it is whole. Call it under wine_locked.
wine_make_prefix() {
  [ -f "$wine_home/$1/.whole" ] && return 0
  echo "Making the Wine prefix build/wine/$1 ..." >&2
  rm -rf "${wine_home:?}/$1" "${wine_home:?}/$1.new"
  mkdir -p "$wine_home/home"
  if [ $# -gt 1 ]; then
    (wine_use "$2" && "$wineserver" -k -w </dev/null >/dev/null 2>&1) || true
    cp -a "$wine_home/$2" "$wine_home/$1.new"
    rm -f "$wine_home/$1.new"/registered
  else
    (
      wine_use "$1.new"
      $wine64 wineboot -i </dev/null >/dev/null 2>&1
      "$wineserver" -w </dev/null >/dev/null 2>&1
    )
  fi
  [ -f "$wine_home/$1.new/system.reg" ] || {
    echo "The Wine prefix could not be made." >&2
    return 1
  }
  mv "$wine_home/$1.new" "$wine_home/$1"
  : >"$wine_home/$1/.whole"
}

# wine_need_prefix NAME: makes one of the four prefixes with what it is made from. Call it under
# wine_locked.
wine_need_prefix() {
  bits=
  case $1 in
    *-x86)
      bits=-x86
      wine_fetch_x86 || return 1
      ;;
  esac
  wine_make_prefix "real$bits" || return 1
  case $1 in
    sandbox*) wine_make_prefix "sandbox$bits" "real$bits" ;;
  esac
}

# wine_register NAME DLL: registers the library in that prefix when it isn't the one registered.
wine_register() {
  stamp="$wine_home/$1/registered"
  mark="$2 $(sha256sum <"$2")"
  [ -f "$stamp" ] && [ "$(cat "$stamp")" = "$mark" ] && return 0
  (
    wine_use "$1"
    wine_keep_server
    folder=system32
    case $1 in *-x86) folder=syswow64 ;; esac
    $wine64 "C:\\windows\\$folder\\regsvr32.exe" /s "$(wine_path "$2")" </dev/null >/dev/null 2>&1
  ) || {
    echo "$2 could not be registered." >&2
    return 1
  }
  printf '%s\n' "$mark" >"$stamp"
}

# wine_locked COMMAND...: runs it while no other call of ours sets anything up.
wine_locked() {
  mkdir -p "$root/build"
  {
    flock 9
    "$@" 9>&-
  } 9>"$root/build/.lock"
}
