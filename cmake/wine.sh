# Shell functions around the project's private Wine prefixes; sourced by ./run, ./test and
# wine-exec. Needs $root, the project's folder. Wine runs without a display, never touches the
# user's own prefix or home folder, and ends by itself half a minute after its last program.

wine_home="$root/build/wine"
wine64=/usr/lib/wine/wine64
wineserver=/usr/lib/wine/wineserver64

# wine_use NAME: points the environment at the prefix of that name.
wine_use() {
  export WINEPREFIX="$wine_home/$1" WINEARCH=win64 WINEDEBUG="${WINEDEBUG:--all}"
  export WINEDLLOVERRIDES='mscoree,mshtml,winemenubuilder.exe=' WINESERVER="$wineserver"
  # Arguments and file names are UTF-8, whatever the caller speaks.
  export HOME="$wine_home/home" LC_ALL=C.UTF-8
  unset DISPLAY WAYLAND_DISPLAY
}

# wine_keep_server: has a server running that outlives its programs for a while, which saves their
# start-up. Its service processes are started here, away from the caller's streams: they would keep
# a pipe open long after the program that started them.
wine_keep_server() {
  "$wineserver" -k0 </dev/null >/dev/null 2>&1 && return 0
  "$wineserver" -p30 </dev/null >/dev/null 2>&1 || true
  "$wine64" wineboot </dev/null >/dev/null 2>&1 || true
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
      "$wine64" wineboot -i </dev/null >/dev/null 2>&1
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

# wine_register NAME DLL: registers the library in that prefix when it isn't the one registered.
wine_register() {
  stamp="$wine_home/$1/registered"
  mark="$2 $(sha256sum <"$2")"
  [ -f "$stamp" ] && [ "$(cat "$stamp")" = "$mark" ] && return 0
  (
    wine_use "$1"
    wine_keep_server
    "$wine64" regsvr32 /s "$(wine_path "$2")" </dev/null >/dev/null 2>&1
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
