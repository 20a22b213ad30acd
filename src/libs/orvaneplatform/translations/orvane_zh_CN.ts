<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>Model</name>
    <message>
        <source>Page %1</source>
        <translation>第 %1 页</translation>
    </message>
    <message>
        <source>Fade</source>
        <translation>淡入淡出</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>全屏</translation>
    </message>
    <message>
        <source>SL</source>
        <translation>SL</translation>
    </message>
    <message>
        <source>DL</source>
        <translation>DL</translation>
    </message>
    <message>
        <source>4K</source>
        <translation>4K</translation>
    </message>
    <message>
        <source>Load to PGM</source>
        <translation>加载到 PGM</translation>
    </message>
    <message>
        <source>Load to PVW</source>
        <translation>加载到 PVW</translation>
    </message>
    <message>
        <source>Taking,please wait...</source>
        <translation>正在切换，请稍候...</translation>
    </message>
    <message>
        <source>Adding screen,please wait...</source>
        <translation>正在添加屏幕，请稍候...</translation>
    </message>
    <message>
        <source>The number of screens exceeds the limit!</source>
        <translation>屏幕数量超出上限！</translation>
    </message>
    <message>
        <source>The current operation cannot be completed during the screen taking.</source>
        <translation>屏幕切换期间无法完成当前操作。</translation>
    </message>
    <message>
        <source>The number of layers exceeds the limit.</source>
        <translation>图层数量超出上限。</translation>
    </message>
    <message>
        <source>No matching input source found.</source>
        <translation>未找到匹配的输入源。</translation>
    </message>
    <message>
        <source>Not enough resources.</source>
        <translation>资源不足。</translation>
    </message>
    <message>
        <source>Cleaning layers,please wait...</source>
        <translation>正在清除图层，请稍候...</translation>
    </message>
    <message>
        <source>Do you want to remove all the layers from PGM?</source>
        <translation>是否移除 PGM 中的所有图层？</translation>
    </message>
    <message>
        <source>Do you want to remove all the layers from PVW?</source>
        <translation>是否移除 PVW 中的所有图层？</translation>
    </message>
    <message>
        <source>No SL input source, this operation cannot be completed.</source>
        <translation>没有 SL 输入源，无法完成此操作。</translation>
    </message>
    <message>
        <source>No DL input source, this operation cannot be completed.</source>
        <translation>没有 DL 输入源，无法完成此操作。</translation>
    </message>
    <message>
        <source>No 4K input source, this operation cannot be completed.</source>
        <translation>没有 4K 输入源，无法完成此操作。</translation>
    </message>
    <message>
        <source>Please select a layer first.</source>
        <translation>请先选择图层。</translation>
    </message>
    <message>
        <source>Saving device data, please wait.</source>
        <translation>正在保存设备数据，请稍候。</translation>
    </message>
    <message>
        <source>save data successed.</source>
        <translation>数据保存成功。</translation>
    </message>
    <message>
        <source>save data failure.</source>
        <translation>数据保存失败。</translation>
    </message>
    <message>
        <source>Layer count is more than %1</source>
        <translation>图层数量超过 %1</translation>
    </message>
    <message>
        <source>Are you sure you want to delete all the presets?</source>
        <translation>确定要删除所有预设吗？</translation>
    </message>
    <message>
        <source>can&apos;t create PVW preset</source>
        <translation>无法创建 PVW 预设</translation>
    </message>
    <message>
        <source>The preset will be directly loaded to PGM. Continue?</source>
        <translation>预设将直接加载到 PGM。是否继续？</translation>
    </message>
    <message>
        <source>Deleting preset,please wait...</source>
        <translation>正在删除预设，请稍候...</translation>
    </message>
    <message>
        <source>Cleaning presets,please wait...</source>
        <translation>正在清除预设，请稍候...</translation>
    </message>
</context>
</TS>
