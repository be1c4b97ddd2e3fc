#pragma once

#include <vector>

#include <QString>

namespace Vk_Records {

/// What is wrong with the files of an import. A million bad lines are counted; told are so many as
/// somebody can read.
class ImportComplaints {
public:
    /// aFile is the place of the file among the others; line 0 stands for the whole file.
    void Add(std::size_t aFile, const QString &aFileName, int aLine, const QString &aReason);

    /// Raises InvalidArgument with all of them, in the order of files and lines, if there are any.
    void RaiseIfAny();

private:
    struct Complaint {
        std::size_t File;
        int Line;
        QString Text;
    };

    std::vector<Complaint> theKept;
    qsizetype theCount = 0;
};

}  // namespace Vk_Records
