#include "datafiles/reading/datafile.h"

#include "util/filecalls.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

std::shared_ptr<const DataFile> DataFile::open(const QString &path)
{
    const std::shared_ptr<DataFile> file(new DataFile); // before there is a descriptor that could be lost
    // Without blocking: opening a pipe that nobody writes to would wait for ever.
    file->m_descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    struct stat status;
    if (file->m_descriptor < 0 || ::fstat(file->m_descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return nullptr;
    ::posix_fadvise(file->m_descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
    file->m_size = status.st_size;
    file->m_id = FileId(status.st_dev, status.st_ino);
    return file;
}

DataFile::~DataFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

std::int64_t DataFile::read(std::int64_t offset, char *bytes, std::size_t size) const
{
    return FileCalls::current().pread(m_descriptor, bytes, size, offset);
}
