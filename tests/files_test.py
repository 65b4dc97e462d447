#!/usr/bin/env python3
"""files_test.py KELXML LIBRARIES - how kelxml reads and replaces files: pipes and devices, permissions and owners,
links, and failures, which must keep the old file."""
import errno
import os
import pathlib
import resource
import shutil
import stat
import struct
import subprocess
import sys
import tempfile
import threading
import unittest

NOBODY, STRANGER = 65534, 1000
IS_ROOT = os.geteuid() == 0
place = tempfile.TemporaryDirectory()
# Copies the program, because other users may have no access to the build tree.
shared = pathlib.Path(place.name)
shared.chmod(0o755)
kelxml = shutil.copy(sys.argv[1], shared)
for library in pathlib.Path(sys.argv[2]).glob('libKel*.so*'):
    shutil.copy(library, shared, follow_symlinks=True)
ENVIRONMENT = os.environ | {'LD_LIBRARY_PATH': str(shared)}


def access_list(permissions):
    """Returns an access control list, as the kernel stores it, that gives the user STRANGER these permissions."""
    entries = [(1, 7, -1), (2, permissions, STRANGER), (4, 7, -1), (16, 7, -1), (32, 6, -1)]
    return struct.pack('<I', 2) + b''.join(struct.pack('<HHi', *entry) for entry in entries)


class Files(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.top = pathlib.Path(directory.name)
        self.top.chmod(0o777)
        self.file = self.top / 'file'
        self.addCleanup(lambda: self.assertEqual([], list(self.top.glob('*.kelxml*')), 'temporary files must be removed'))


class Replacing(Files):
    def replace(self, path, text='new', by_nobody=False, most=None, **how):
        """Writes a document that contains `text` to `path`. If `by_nobody` is true and the test runs as root,
        the program runs as the user NOBODY. `most` limits the size of files in bytes. Returns the error number, or 0
        for success."""
        source = shared / 'source.xml'
        source.write_text(f'<r>{text}</r>')
        source.chmod(0o644)
        if by_nobody and IS_ROOT:
            how |= {'user': NOBODY, 'group': NOBODY, 'extra_groups': []}
        limit = (lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (most, most))) if most else None
        # Python ignores SIGXFSZ, the signal for a file that becomes too long. With `restore_signals=False`, the child
        # ignores it too.
        done = subprocess.run([kelxml, 'copy', source, path], env=ENVIRONMENT,
                              stderr=subprocess.PIPE, text=True, preexec_fn=limit, restore_signals=False, **how)
        reasons = [code for code in errno.errorcode if done.stderr.rstrip().endswith(f'{path}: {os.strerror(code)}')]
        self.assertEqual(1 if reasons else 0, done.returncode, done.stderr)
        return reasons[0] if reasons else 0

    def expect_text(self, path, text):
        self.assertEqual(f'<r>{text}</r>\n', path.read_text())

    def permissions(self, path):
        return oct(stat.S_IMODE(path.lstat().st_mode))

    def test_new_files_get_the_permissions_that_the_mask_allows_and_old_files_keep_permissions_and_links(self):
        self.assertEqual(0, self.replace(self.file, umask=0o27))
        self.assertEqual('0o640', self.permissions(self.file))
        self.file.chmod(0o4751)
        link, dangling = self.top / 'link', self.top / 'dangling'
        link.symlink_to('file')
        inode = self.file.stat().st_ino
        self.assertEqual(0, self.replace(link, 'newer'))
        self.expect_text(self.file, 'newer')
        self.assertEqual('0o4751', self.permissions(self.file))
        self.assertNotEqual(inode, self.file.stat().st_ino, 'the old file must be replaced, not overwritten')
        self.assertTrue(link.is_symlink())
        dangling.symlink_to('target')
        self.assertEqual(errno.EFBIG, self.replace(dangling, 'x' * 10000, most=4096))
        self.assertEqual({'dangling', 'file', 'link'}, set(os.listdir(self.top)))
        self.assertEqual(0, self.replace(dangling, 'made'))
        self.expect_text(self.top / 'target', 'made')

    def test_a_file_that_cannot_be_written_is_refused_with_the_systems_reason(self):
        self.file.write_text('old')
        self.file.chmod(0o444)
        (self.top / 'loop').symlink_to('loop')
        for path, reason in (('none/file', errno.ENOENT), ('new/', errno.ENOENT), ('', errno.EISDIR),
                             ('file/x', errno.ENOTDIR), ('loop', errno.ELOOP), ('n' * 256, errno.ENAMETOOLONG),
                             ('/dev/full', errno.ENOSPC), ('/dev/fd/999999', errno.EBADF)):
            self.assertEqual(reason, self.replace(os.path.join(self.top, path)), path)
        self.assertEqual(errno.EACCES, self.replace(self.file, by_nobody=True), 'a read-only file must be refused')
        self.assertEqual('old', self.file.read_text())
        self.assertEqual({'file', 'loop'}, set(os.listdir(self.top)))

    def test_a_write_beyond_the_size_limit_keeps_the_old_text_even_if_the_file_is_written_in_place(self):
        self.file.write_text('old')
        if IS_ROOT:
            os.chown(self.file, NOBODY, NOBODY)
        inode = self.file.stat().st_ino
        for permissions, old in (0o777, 'old'), (0o777, ''), (0o555, ''), (0o555, 'old'):
            with self.subTest(permissions=oct(permissions), old=old):
                self.top.chmod(permissions)
                self.file.write_text(old)
                self.assertEqual(errno.EFBIG, self.replace(self.file, 'x' * 10000, by_nobody=True, most=4096))
                self.assertEqual(old, self.file.read_text())
                self.assertEqual(['file'], os.listdir(self.top))
        for text in 'new and longer', 'short':
            self.assertEqual(0, self.replace(self.file, text, by_nobody=True))
            self.expect_text(self.file, text)
        self.assertEqual(inode, self.file.stat().st_ino, 'the file must be written in place')
        self.assertEqual(errno.EACCES, self.replace(self.top / 'none', by_nobody=True))

    def test_a_file_keeps_its_access_list_and_does_not_get_the_default_list_of_the_directory(self):
        plain = self.top / 'plain'
        for path in self.file, plain:
            path.write_text('old')
        plain.chmod(0o660)
        os.setxattr(self.file, 'system.posix_acl_access', access_list(4))
        os.setxattr(self.top, 'system.posix_acl_default', access_list(7))
        for path in self.file, plain:
            self.assertEqual(0, self.replace(path), path)
        self.assertEqual(access_list(4), os.getxattr(self.file, 'system.posix_acl_access'))
        self.assertEqual([], os.listxattr(plain))
        self.assertEqual('0o660', self.permissions(plain))

    @unittest.skipUnless(IS_ROOT, 'only root can change the owner of a file')
    def test_a_user_who_could_not_read_the_old_file_cannot_read_the_new_one(self):
        for owner, group, before, after_nobody, has_list in (
                (STRANGER, NOBODY, 0o6776, 0o2776, False), (STRANGER, STRANGER, 0o6776, 0o766, False),
                (STRANGER, STRANGER, 0o746, 0o744, False), (STRANGER, STRANGER, 0o426, 0o400, False),
                (NOBODY, STRANGER, 0o6764, 0o4744, False), (STRANGER, STRANGER, 0o776, 0o700, True),
                (STRANGER, NOBODY, 0o776, 0o776, True)):
            with self.subTest(owner=owner, group=group, before=oct(before)):
                self.file.unlink(missing_ok=True)
                self.file.write_text('old')
                os.chown(self.file, owner, group)
                if has_list:
                    os.setxattr(self.file, 'system.posix_acl_access', access_list(0))
                self.file.chmod(before)
                self.assertEqual(0, self.replace(self.file, 'by root'))
                now = self.file.stat()
                self.assertEqual((oct(before), owner, group), (self.permissions(self.file), now.st_uid, now.st_gid))
                self.assertEqual(0, self.replace(self.file, 'by nobody', by_nobody=True))
                self.assertEqual((oct(after_nobody), NOBODY), (self.permissions(self.file), self.file.stat().st_uid))

    def test_another_users_link_in_a_sticky_directory_is_followed_only_if_the_kernel_follows_it(self):
        sticky = self.top / 'sticky'
        sticky.mkdir()
        sticky.chmod(0o1777)
        self.file.write_text('old')
        link = sticky / 'link'
        for target in 'file', 'none':
            link.unlink(missing_ok=True)
            link.symlink_to(f'../{target}')
            if IS_ROOT:
                os.chown(link, STRANGER, STRANGER, follow_symlinks=False)
            try:
                os.close(os.open(link, os.O_WRONLY))
                expected = 0
            except OSError as refusal:
                expected = errno.EACCES if refusal.errno == errno.EACCES else 0
            self.assertEqual(expected, self.replace(link), target)
            if expected == 0:
                self.expect_text(self.top / target, 'new')
        self.assertEqual(expected == 0, (self.top / 'none').exists())

    def test_pipes_and_descriptors_are_written_directly(self):
        os.mkfifo(self.file)
        with subprocess.Popen(['cat', self.file], stdout=subprocess.PIPE, text=True) as reader:
            self.assertEqual(0, self.replace(self.file, 'through the pipe'))
            self.assertEqual('<r>through the pipe</r>\n', reader.stdout.read())
        self.assertTrue(self.file.is_fifo())
        self.assertEqual(0, self.replace('/dev/null'))
        with open(self.top / 'log', 'wb', buffering=0) as log:
            log.write(b'first, ')
            self.assertEqual(0, self.replace(f'/dev/fd/{log.fileno()}', 'second', pass_fds=[log.fileno()]))
        self.assertEqual('first, <r>second</r>\n', (self.top / 'log').read_text())


class Reading(Files):
    def check(self, path):
        """Runs `kelxml check`. Returns the message, with FILE in place of the path; an empty text if the file loads."""
        done = subprocess.run([kelxml, 'check', path], env=ENVIRONMENT, stdout=subprocess.PIPE, text=True)
        return done.stdout.replace(f'{path}:', 'FILE:', 1).rstrip()

    def test_a_pipe_loads_like_a_file(self):
        os.mkfifo(self.file)
        whole = b'<a>' + b'x' * 300000 + b'</a>'  # does not fit in a pipe, so the writer waits for the reader
        cut = 'FILE:1:300007: unexpected end of file'
        for content, reason in (whole, ''), (whole[:-1], cut), (b'', 'FILE: it is empty'):
            writer = threading.Thread(target=self.file.write_bytes, args=[content])
            writer.start()
            self.assertEqual(reason, self.check(self.file))
            writer.join()

    def test_an_endless_pipe_is_read_up_to_the_limit(self):
        os.mkfifo(self.file)
        taken = 0

        def write():
            nonlocal taken
            with open(self.file, 'wb', buffering=0) as pipe:
                try:
                    taken = pipe.write(b'<r/>')
                    while True:
                        taken += pipe.write(b' ' * 65536)
                except BrokenPipeError:
                    pass

        writer = threading.Thread(target=write)
        writer.start()
        self.assertEqual('FILE: a device with more than 64 MiB', self.check(self.file))
        writer.join()
        self.assertAlmostEqual(64.1, taken / 2**20, delta=0.2)

    def test_devices_directories_and_large_files_are_refused(self):
        large = self.top / 'large'
        large.touch()
        os.truncate(large, 2**29 + 1)
        for path, reason in (('/proc/self/mem', 'Input/output error'), ('/dev/zero', 'a device with more than 64 MiB'),
                             ('/', 'Is a directory'), ('/dev/null', 'it is empty'), (large, 'larger than 512 MiB')):
            self.assertEqual('FILE: ' + reason, self.check(path), path)


unittest.main(argv=sys.argv[:1])
