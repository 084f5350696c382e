<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>OrluneDlg</name>
    <message>
        <source>-</source>
        <translation>-</translation>
    </message>
    <message>
        <source>Auto Create Lut</source>
        <translation>调整Lut</translation>
    </message>
    <message>
        <source>Brightness(-150~150)：</source>
        <translation>亮度(-150~150)：</translation>
    </message>
    <message>
        <source>CSV File</source>
        <translation>CSV文件</translation>
    </message>
    <message>
        <source>Camera does not support read and write operations of Lut! </source>
        <translation>设备不支持读写Lut！</translation>
    </message>
    <message>
        <source>Contrast(-150~150)：</source>
        <translation>对比度(-150~150)：</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>默认</translation>
    </message>
    <message>
        <source>Device information acquisition failed! </source>
        <translation>设备信息获取失败！</translation>
    </message>
    <message>
        <source>Empty Dir, Please Reinstall the installation package! </source>
        <translation>文件夹为空，请重装安装包解决该问题！</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误提示</translation>
    </message>
    <message>
        <source>Gamma(0~400)：</source>
        <translation>Gamma(0~400)：</translation>
    </message>
    <message>
        <source>Get xml value failed! </source>
        <translation>获取xml键值信息失败！</translation>
    </message>
    <message>
        <source>GroupBox</source>
        <translation>基准Lut选择</translation>
    </message>
    <message>
        <source>Invalid file data! </source>
        <translation>文件数据无效！</translation>
    </message>
    <message>
        <source>Invalid parameter! </source>
        <translation>参数无效！</translation>
    </message>
    <message>
        <source>Orlune</source>
        <translation>Orlune</translation>
    </message>
    <message>
        <source>Lut File</source>
        <translation>Lut文件</translation>
    </message>
    <message>
        <source>Lut Range(0~4095)：</source>
        <translation>Lut生效范围(0~4095)：</translation>
    </message>
    <message>
        <source>Lut file (*.lut)</source>
        <translation></translation>
    </message>
    <message>
        <source>Lut file (*.lut);;csv file (*.csv)</source>
        <translation></translation>
    </message>
    <message>
        <source>Open File</source>
        <translation>打开文件</translation>
    </message>
    <message>
        <source>Open file failed! </source>
        <translation>文件打开失败！</translation>
    </message>
    <message>
        <source>Read From Device</source>
        <translation>从设备中读取</translation>
    </message>
    <message>
        <source>Save Lut</source>
        <translation>保存查找表</translation>
    </message>
    <message>
        <source>Save To File</source>
        <translation>Lut保存到文件</translation>
    </message>
    <message>
        <source>Set Lut error! whether the device is disconnected.</source>
        <translation>设置Lut失败！请确认设备是否掉线。</translation>
    </message>
    <message>
        <source>Standard Lut</source>
        <translation>预设Lut</translation>
    </message>
    <message>
        <source>The Lut File is missing, Please Reinstall the installation package! </source>
        <translation>Lut文件丢失，请重装安装包解决该问题！</translation>
    </message>
    <message>
        <source>The filename of Lut is error! </source>
        <translation>无效文件名称！</translation>
    </message>
    <message>
        <source>The value is out of range, 
The right value minus the left value is greater than or equal to 63! </source>
        <translation>输入值超出范围，右值减左值需大于等于63！</translation>
    </message>
    <message>
        <source>The value is out of range, 
please enter a value between %1~%2 ! </source>
        <translation>输入值超出范围，
请输入%1~%2之间的值 ！ </translation>
    </message>
    <message>
        <source>This operation will save the user sets and set the UserSetDefault to UserSet0!</source>
        <translation>该操作会保存用户参数组，并将启动参数组修改为UserSet0！</translation>
    </message>
    <message>
        <source>Unkown Error! </source>
        <translation>未知错误！</translation>
    </message>
    <message>
        <source>Write To Device</source>
        <translation>Lut写入设备</translation>
    </message>
    <message>
        <source>bin</source>
        <translation></translation>
    </message>
    <message>
        <source>csv file (*.csv)</source>
        <translation></translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>General Error</source>
        <translation>一般性错误</translation>
    </message>
    <message>
        <source>Get xml value error</source>
        <translation>获取设备查找表信息失败</translation>
    </message>
    <message>
        <source>Invalid input param</source>
        <translation>非法的输入参数</translation>
    </message>
    <message>
        <source>Orlune Plugin</source>
        <translation>Orlune插件</translation>
    </message>
    <message>
        <source>Out of memory</source>
        <translation>内存不足</translation>
    </message>
    <message>
        <source>The Lut File is missing, Please Reinstall the installation package</source>
        <translation>Lut文件丢失，请重装安装包解决该问题</translation>
    </message>
    <message>
        <source>This plugin can create and adjust lut,can read and save lut.</source>
        <translation>这个插件主要生成和调节查找表，并能读取和保存查找表。</translation>
    </message>
    <message>
        <source>success</source>
        <translation>成功</translation>
    </message>
    <message>
        <source>unknown error</source>
        <translation>未知错误</translation>
    </message>
</context>
</TS>
