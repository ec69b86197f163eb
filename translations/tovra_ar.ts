<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar_EG">
<context>
    <name>TVRNavigationController</name>
    <message>
        <source>Back</source>
        <extracomment>Goes back to the previous screen.</extracomment>
        <translation>رجوع</translation>
    </message>
</context>
<context>
    <name>TVRPrivacyPolicyViewController</name>
    <message>
        <source>Privacy Policy</source>
        <extracomment>The title of the screen that shows the application&apos;s privacy policy.</extracomment>
        <translation>سياسة الخصوصية</translation>
    </message>
</context>
<context>
    <name>TVRReadOnlyDocumentViewController</name>
    <message>
        <source>Close</source>
        <extracomment>Closes a terms of service or privacy policy screen that was opened over the application.</extracomment>
        <translation>إغلاق</translation>
    </message>
</context>
<context>
    <name>TVRTermsOfServiceViewController</name>
    <message>
        <source>Terms of Service</source>
        <extracomment>The title of the screen that shows the application&apos;s terms of service.</extracomment>
        <translation>شروط الخدمة</translation>
    </message>
</context>
<context>
    <name>TVRTermsViewController</name>
    <message>
        <source>Terms of Service</source>
        <extracomment>The title of the screen on which the user accepts or refuses the terms of service.</extracomment>
        <translation>شروط الخدمة</translation>
    </message>
    <message>
        <source>Disagree</source>
        <extracomment>The button that refuses the terms of service shown above it.</extracomment>
        <translation>لا أوافق</translation>
    </message>
    <message>
        <source>Agree</source>
        <extracomment>The button that accepts the terms of service shown above it.</extracomment>
        <translation>أوافق</translation>
    </message>
</context>
</TS>
