#!/usr/bin/env bash
# Builds the packages of the last commit twice, in folders of different names, and wants equal bytes; lets lintian look at
# the package; installs it into a fresh Debian system below a folder of its own, tries it and the archive there, and
# removes it again: nothing must stay. Needs root (for the fresh system), and takes two whole builds.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install_packages.sh lintian mmdebstrap dpkg-dev file desktop-file-utils appstream
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
commit=$(git rev-parse HEAD)  # what is committed meanwhile does not count
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct "$commit")
export SOURCE_DATE_EPOCH

# build <folder>: the packages from what the commit holds, and from nothing else
build() {
    mkdir -p "$1"
    git archive "$commit" | tar -x -C "$1"
    (cd "$1" && cmake --preset package && cmake --build build/package && cd build/package && cpack) >"$work/log" 2>&1 ||
        { tail -n 60 "$work/log" >&2; exit 1; }
}
echo "Building ..."
build "$work/one"
echo "Building again ..."
build "$work/another/folder"
for file in "$work"/one/build/package/vortan*.{deb,tar.gz}; do
    other=$work/another/folder/build/package/$(basename "$file")
    cmp "$file" "$other" && continue
    [[ $file = *.tar.gz ]] && exit 1
    dpkg-deb -R "$file" "$work/first" && dpkg-deb -R "$other" "$work/second"
    diff -rq "$work/first" "$work/second" >&2 || exit 1
    exit 1
done
echo "Two builds are equal"

package=$(echo "$work"/one/build/package/vortan_*.deb)
archive=$(echo "$work"/one/build/package/vortan-*.tar.gz)
lintian --allow-root --fail-on error,warning "$package"
made=$work/one/build/package/packaging/made
desktop-file-validate packaging/vortan.desktop
xmllint --noout packaging/vortan.xml "$made/vortan.metainfo.xml"
for page in vortan vortan-cli; do
    [ -z "$(LC_ALL=C.UTF-8 man --warnings -l "$made/$page.1" 2>&1 >/dev/null)" ]
done
bash -n "$made/vortan-cli.bash"
echo "The package is in order"

# Runs in the fresh system's folder, $1, with the packet manager of this machine set up for it.
cat >"$work/try" <<'END'
#!/usr/bin/env bash
set -euo pipefail
root=$1
export APT_CONFIG=$MMDEBSTRAP_APT_CONFIG DEBIAN_FRONTEND=noninteractive
inside() { chroot "$root" env HOME=/home-of-a-user "$@"; }
# The packet manager runs outside, where the archive's keys and sources are; what it unpacks goes inside.
packages() { apt-get -o DPkg::Chroot-Directory="$root" -y -qq "$@" >/dev/null; }
# What stays may differ in what the system itself notes down.
files() {
    (cd "$root" && find . -path ./proc -prune -o -path ./sys -prune -o -path ./dev -prune -o -path ./tmp -prune -o \
        -path ./var/log -prune -o -path ./var/cache -prune -o -path ./var/lib/dpkg -prune -o -path ./var/lib/apt -prune -o \
        -path ./home-of-a-user -prune -o -print | sort)
}
# try <bin folder>: both programs, with what they need of their own
try() {
    inside "$1/vortan-cli" solve "$2/house.vta" | grep 'Hand over\|Total' >/dev/null
    inside "$1/vortan-cli" chart gantt "$2/house.vta" -o /tmp/gantt.svg
    inside "$1/vortan-cli" report tasks "$2/house.vta" -o /tmp/tasks.xlsx
    inside sh -c "cd /tmp && $1/vortan-cli report status $2/house.vta -o status.rtf"
    inside "$1/vortan" --version
    cp "$root/$2/house.vta" "$root/tmp"  # an opened plan is locked beside it
    inside env QT_QPA_PLATFORM=offscreen timeout 5 "$1/vortan" /tmp/house.vta || [ $? -eq 124 ]
    for file in gantt.svg tasks.xlsx status.rtf; do [ -s "$root/tmp/$file" ]; done
    rm "$root"/tmp/{gantt.svg,tasks.xlsx,status.rtf,house.vta*}
}
mkdir -p "$root/home-of-a-user" "$root/tmp"
cp "$PACKAGE" "$root/tmp/vortan.deb"
packages satisfy "$(dpkg-deb -f "$PACKAGE" Depends), shared-mime-info, desktop-file-utils, hicolor-icon-theme"
mkdir "$root/opt/a folder" && tar -xzf "$ARCHIVE" -C "$root/opt/a folder" --strip-components=1
mv "$root/opt/a folder" "$root/opt/moved"
try /opt/moved/bin /opt/moved/share/doc/vortan/examples
rm -r "$root/opt/moved"
echo "The archive runs from a folder that was moved"
files >"$WORK/before"
packages install "$root/tmp/vortan.deb"
try /usr/bin /usr/share/doc/vortan/examples
grep -q '^application/x-vortan-bundle=vortan.desktop' "$root/usr/share/applications/mimeinfo.cache"
grep -q ':\*\.vta' "$root/usr/share/mime/globs2"
packages purge vortan
files >"$WORK/after"
diff "$WORK/before" "$WORK/after"
! grep -rq vortan "$root/usr/share/applications" "$root/usr/share/mime" "$root/var/lib/dpkg/status"
echo "The package runs, is known to the desktop, and goes without a trace"
END
chmod +x "$work/try"
echo "Installing into a fresh system ..."
mkdir "$work/root"
chmod 755 "$work"
PACKAGE=$package ARCHIVE=$archive WORK=$work mmdebstrap --quiet --variant=apt --format=null \
    --customize-hook="$work/try \"\$1\"" "$(. /etc/os-release && echo "$VERSION_CODENAME")" /dev/null
