#!/usr/bin/env bash
# Builds the Debian package from a build folder whose programs are built, then checks what it
# holds, its control fields, the user unit it installs, and that lintian finds no error in it.
# Usage: check_package.sh BUILD_DIR VERSION
set -euo pipefail
build=$1
version=$2
source=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "package check: $*" >&2
    exit 1
}

if ! cpack --config "$build/CPackConfig.cmake" -B "$work" >"$work/cpack.log" 2>&1; then
    cat "$work/cpack.log" >&2
    fail "cpack could not build the package"
fi
deb=$(find "$work" -maxdepth 1 -name 'brizalog_*.deb')
[ -n "$deb" ] || fail "no brizalog_*.deb in the output of cpack"
arch=$(dpkg --print-architecture)
[ "$(basename "$deb")" = "brizalog_${version}_${arch}.deb" ] || fail "file named $(basename "$deb")"

# The control fields.
dpkg-deb --info "$deb" >/dev/null || fail "dpkg-deb cannot read the package"
[ "$(dpkg-deb --field "$deb" Package)" = brizalog ] || fail "Package field"
[ "$(dpkg-deb --field "$deb" Version)" = "$version" ] || fail "Version field"
[ "$(dpkg-deb --field "$deb" Architecture)" = "$arch" ] || fail "Architecture field"
maintainer=$(dpkg-deb --field "$deb" Maintainer)
grep -Eq '^[^<>]+ <[^<>@ ]+@[^<>@ ]+\.[a-z]+>$' <<<"$maintainer" && ! grep -q '\.invalid>' <<<"$maintainer" ||
    fail "Maintainer field is no real name and mail address: $maintainer"
depends=$(dpkg-deb --field "$deb" Depends)
# The names of the packages depended on, one a line, without their versions.
names=$(tr ',' '\n' <<<"$depends" | sed -e 's/^ *//' -e 's/ .*//')
for library in libqt6core6 libqt6gui6 libqt6widgets6 libqt6serialport6 libqt6printsupport6 \
    libc6 libstdc++6; do
    grep -Fqx "$library" <<<"$names" || fail "Depends lacks $library: $depends"
done

# What it installs, with the modes a package needs.
contents=$(dpkg-deb --contents "$deb")
has() {
    grep -Eq "^$1 root/root +[0-9]+ [-0-9]+ [:0-9]+ \./$2$" <<<"$contents" ||
        fail "the package lacks $2 with mode $1"
}
for program in brizalog brizalog-logger brizalog-boardsim brizalog-script; do
    has -rwxr-xr-x "usr/bin/$program"
    has -rw-r--r-- "usr/share/man/man1/$program.1.gz"
done
for file in share/applications/org.brizalog.Brizalog.desktop \
    share/metainfo/org.brizalog.Brizalog.metainfo.xml \
    share/icons/hicolor/scalable/apps/brizalog.svg lib/systemd/user/brizalog-logger.service \
    share/doc/brizalog/README.md share/doc/brizalog/copyright share/doc/brizalog/changelog.gz; do
    has -rw-r--r-- "usr/$file"
done
# The manual: the README and every screenshot that it shows.
for image in $(grep -o 'docs/[A-Za-z0-9_.-]*\.png' "$source/README.md" | sort -u); do
    has -rw-r--r-- "usr/share/doc/brizalog/$image"
done
! grep -Eq '\./(usr/local|home|root|tmp)/' <<<"$contents" || fail "files outside /usr"

dpkg-deb -x "$deb" "$work/root"
root=$work/root/usr

# One licence everywhere: the LICENSE file is the GPL version 3, which the copyright file and
# the metainfo give as version 3 or later.
[ ! -f /usr/share/common-licenses/GPL-3 ] || cmp -s "$source/LICENSE" /usr/share/common-licenses/GPL-3 ||
    fail "LICENSE is not the text of the GNU GPL version 3"
grep -qx 'License: GPL-3+' "$root/share/doc/brizalog/copyright" ||
    fail "the copyright file does not give the licence GPL-3+"
grep -q '<project_license>GPL-3.0-or-later</project_license>' \
    "$root/share/metainfo/org.brizalog.Brizalog.metainfo.xml" ||
    fail "the metainfo does not give the licence GPL-3.0-or-later"
file "$root/bin/brizalog-logger" | grep -q ', stripped' || fail "the programs are not stripped"
grep -qx 'ExecStart=/usr/bin/brizalog-logger' "$root/lib/systemd/user/brizalog-logger.service" ||
    fail "the user unit does not start /usr/bin/brizalog-logger"
grep -qx 'Exec=brizalog' "$root/share/applications/org.brizalog.Brizalog.desktop" ||
    fail "the menu entry does not start brizalog"
desktop-file-validate "$root/share/applications/org.brizalog.Brizalog.desktop"

status=0
lintian --fail-on error "$deb" >"$work/lintian.log" 2>&1 || status=$?
grep -v 'root privileges' "$work/lintian.log" || true
[ "$status" -eq 0 ] || fail "lintian finds errors"
echo "package check: $(basename "$deb") passed"
