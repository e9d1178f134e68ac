// SPDX-License-Identifier: MIT
#include <apps/common/reading/XmlLint.h>

#include <support/FolderTest.h>

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

constexpr char schemaText[] = R"(<?xml version="1.0"?>
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
  <xs:element name="frames" type="xs:positiveInteger"/>
</xs:schema>
)";

class XmlLintTest : public FolderTest {
protected:
    /// The file of a schema that requires one element, `frames`, with a positive number.
    QString schema() const {
        writeFile(path(u"frames.xsd"_qs), schemaText);
        return path(u"frames.xsd"_qs);
    }
};

} // namespace

TEST_F(XmlLintTest, a_document_that_follows_its_schema_has_no_complaints) {
    EXPECT_EQ(xmlLintComplaints("<frames>50</frames>", schema()).toStdString(), "");
}

TEST_F(XmlLintTest, a_value_against_the_schema_is_named) {
    EXPECT_THAT(xmlLintComplaints("<frames>none</frames>", schema()).toStdString(),
                HasSubstr("'none' is not a valid value"));
}

TEST_F(XmlLintTest, a_document_that_is_cut_off_is_a_complaint) {
    EXPECT_THAT(xmlLintComplaints("<frames>50", schema()).toStdString(),
                HasSubstr("Premature end"));
}

TEST_F(XmlLintTest, a_schema_that_is_not_there_is_a_complaint) {
    const QString missing = path(u"missing.xsd"_qs);
    EXPECT_THAT(xmlLintComplaints("<frames>50</frames>", missing).toStdString(),
                HasSubstr(missing.toStdString()));
}
