<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>AboutDialog</name>
    <message>
        <source>About kivdesk</source>
        <translation>关于 kivdesk</translation>
    </message>
    <message>
        <source>Coordinate transformation for surveying and GIS: points, coordinate files, datasets, four- and seven-parameter models and spatial reference systems.</source>
        <translation>面向测绘与 GIS 的坐标转换：点、坐标文件、数据集、四参数与七参数模型以及空间参考。</translation>
    </message>
    <message>
        <source>Libraries in use:</source>
        <translation>所用程序库：</translation>
    </message>
</context>
<context>
    <name>BatchProjTransCommand</name>
    <message>
        <source>The algorithm library fails to load!</source>
        <translation>算法库加载失败！</translation>
    </message>
    <message>
        <source>BatchReproject</source>
        <translation>批量投影变换</translation>
    </message>
    <message>
        <source>Batch spatial reference system transformation process complete!</source>
        <translation>批量空间参考变换完成！</translation>
    </message>
    <message>
        <source>BatchTransformation</source>
        <translation>批量坐标变换</translation>
    </message>
    <message>
        <source>Reproject Fail!</source>
        <translation>投影变换失败！</translation>
    </message>
    <message>
        <source>Batch spatial reference system transformation process failed!</source>
        <translation>批量空间参考变换失败！</translation>
    </message>
</context>
<context>
    <name>BatchProjTransDlg</name>
    <message>
        <source>Batch Project</source>
        <translation>批量投影</translation>
    </message>
    <message>
        <source>Select File</source>
        <translation>选择文件</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>RemoveAll</source>
        <translation>全部删除</translation>
    </message>
    <message>
        <source>Check if there is a code number</source>
        <translation>Y 坐标含带号</translation>
    </message>
    <message>
        <source>Input Coordinate System:</source>
        <translation>输入坐标系：</translation>
    </message>
    <message>
        <source>Output Path:</source>
        <translation>输出路径：</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>Output Coordinate System:</source>
        <translation>输出坐标系：</translation>
    </message>
    <message>
        <source>Seven-parameter Conversion:</source>
        <translation>七参数转换：</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Raster Files(*.tiff *.tif *.img *.jp2);; Shape Files(*.shp)</source>
        <translation>栅格文件(*.tiff *.tif *.img *.jp2);; Shape 文件(*.shp)</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>File Abnormity!</source>
        <translation>文件异常！</translation>
    </message>
    <message>
        <source>There is no spatial reference!</source>
        <translation>没有空间参考！</translation>
    </message>
    <message>
        <source>Different Spatial Reference!</source>
        <translation>空间参考不同！</translation>
    </message>
    <message>
        <source>Transform 4Parameter:</source>
        <translation>四参数转换：</translation>
    </message>
    <message>
        <source>Transform 7Parameter:</source>
        <translation>七参数转换：</translation>
    </message>
    <message>
        <source>Open Directory</source>
        <translation>打开文件夹</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Source Spatial Reference is same with Target!</source>
        <translation>源空间参考与目标空间参考相同！</translation>
    </message>
    <message>
        <source>Select Files</source>
        <translation>选择文件</translation>
    </message>
    <message>
        <source>No File Is Selected!</source>
        <translation>未选择文件！</translation>
    </message>
    <message>
        <source>The input file has no spatial reference!</source>
        <translation>输入文件没有空间参考！</translation>
    </message>
    <message>
        <source>The output file is empty!</source>
        <translation>输出文件为空！</translation>
    </message>
    <message>
        <source>The output file has no space for reference!</source>
        <translation>输出文件没有空间参考！</translation>
    </message>
</context>
<context>
    <name>Calculate4ParamsDlg</name>
    <message>
        <source>Four-parameter Calculation</source>
        <translation>四参数计算</translation>
    </message>
    <message>
        <source>Input Source Coordinates</source>
        <translation>输入源坐标</translation>
    </message>
    <message>
        <source>X0=</source>
        <translation>X0=</translation>
    </message>
    <message>
        <source>Y0=</source>
        <translation>Y0=</translation>
    </message>
    <message>
        <source>Input destination Coordinates</source>
        <translation>输入目标坐标</translation>
    </message>
    <message>
        <source>X1=</source>
        <translation>X1=</translation>
    </message>
    <message>
        <source>Y1=</source>
        <translation>Y1=</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>结果</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>Checked</source>
        <translation>选用</translation>
    </message>
    <message>
        <source>SourceX</source>
        <translation>源 X</translation>
    </message>
    <message>
        <source>SourceY</source>
        <translation>源 Y</translation>
    </message>
    <message>
        <source>TargetX</source>
        <translation>目标 X</translation>
    </message>
    <message>
        <source>TargetY</source>
        <translation>目标 Y</translation>
    </message>
    <message>
        <source>RMS</source>
        <translation>中误差</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>编辑</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>计算</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>Input data is incorrect, please re-enter!</source>
        <translation>输入数据有误，请重新输入！</translation>
    </message>
    <message>
        <source>Need 2 GCPs at least!</source>
        <translation>至少需要 2 个控制点！</translation>
    </message>
    <message>
        <source>Stop Edit</source>
        <translation>停止编辑</translation>
    </message>
    <message>
        <source>Calculate Error!</source>
        <translation>计算出错！</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Please run calculation first and get a correct result !</source>
        <translation>请先进行计算并得到正确结果！</translation>
    </message>
    <message>
        <source>save result success!</source>
        <translation>保存结果成功！</translation>
    </message>
    <message>
        <source>Open Text File</source>
        <translation>打开文本文件</translation>
    </message>
    <message>
        <source>Text Files (*.txt);;CSV Files(*.csv)</source>
        <translation>文本文件 (*.txt);;CSV 文件(*.csv)</translation>
    </message>
    <message>
        <source>Export success!</source>
        <translation>导出成功！</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Export failed!</source>
        <translation>导出失败！</translation>
    </message>
    <message>
        <source>This File is not Vaild!</source>
        <translation>该文件无效！</translation>
    </message>
    <message>
        <source>Quality report</source>
        <translation>质量报告</translation>
    </message>
</context>
<context>
    <name>Calculate7ParamsDlg</name>
    <message>
        <source>Seven-parameter Calculation</source>
        <translation>七参数计算</translation>
    </message>
    <message>
        <source>Input source Coordinates</source>
        <translation>输入源坐标</translation>
    </message>
    <message>
        <source>XYH</source>
        <translation>XYH</translation>
    </message>
    <message>
        <source>BLH</source>
        <translation>BLH</translation>
    </message>
    <message>
        <source>dd:mm:ss</source>
        <translation>度:分:秒</translation>
    </message>
    <message>
        <source>dd:mm</source>
        <translation>度:分</translation>
    </message>
    <message>
        <source>dd</source>
        <translation>度</translation>
    </message>
    <message>
        <source>ss</source>
        <translation>秒</translation>
    </message>
    <message>
        <source>dd゜mm&apos;ss&quot;</source>
        <translation>度゜分&apos;秒&quot;</translation>
    </message>
    <message>
        <source>B=</source>
        <translation>B=</translation>
    </message>
    <message>
        <source>L=</source>
        <translation>L=</translation>
    </message>
    <message>
        <source>H=</source>
        <translation>H=</translation>
    </message>
    <message>
        <source>Ellipsoid:</source>
        <translation>椭球：</translation>
    </message>
    <message>
        <source>Input target Coordinates</source>
        <translation>输入目标坐标</translation>
    </message>
    <message>
        <source>X=</source>
        <translation>X=</translation>
    </message>
    <message>
        <source>Y=</source>
        <translation>Y=</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>结果</translation>
    </message>
    <message>
        <source>Import Geographic Transformation:</source>
        <translation>导入地理变换：</translation>
    </message>
    <message>
        <source>Select which points to use </source>
        <translation>选择参与计算的控制点</translation>
    </message>
    <message>
        <source>Checked</source>
        <translation>选用</translation>
    </message>
    <message>
        <source>SourceB</source>
        <translation>源 B</translation>
    </message>
    <message>
        <source>SourceL</source>
        <translation>源 L</translation>
    </message>
    <message>
        <source>SourceH</source>
        <translation>源 H</translation>
    </message>
    <message>
        <source>TargetX</source>
        <translation>目标 X</translation>
    </message>
    <message>
        <source>TargetY</source>
        <translation>目标 Y</translation>
    </message>
    <message>
        <source>TargetH</source>
        <translation>目标 H</translation>
    </message>
    <message>
        <source>PRMS</source>
        <translation>平面中误差</translation>
    </message>
    <message>
        <source>HRMS</source>
        <translation>高程中误差</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>编辑</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>计算</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Click to select spatial reference</source>
        <translation>单击选择空间参考</translation>
    </message>
    <message>
        <source>TargetB</source>
        <translation>目标 B</translation>
    </message>
    <message>
        <source>TargetL</source>
        <translation>目标 L</translation>
    </message>
    <message>
        <source>SourceX</source>
        <translation>源 X</translation>
    </message>
    <message>
        <source>SourceY</source>
        <translation>源 Y</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>Input should be between 0 and 90</source>
        <translation>输入值应在 0 到 90 之间</translation>
    </message>
    <message>
        <source>Input should be between 0 and 180</source>
        <translation>输入值应在 0 到 180 之间</translation>
    </message>
    <message>
        <source>There is one or more coordinate is empty, Please input the coordinate</source>
        <translation>有一个或多个坐标为空，请输入坐标</translation>
    </message>
    <message>
        <source>Need 3 GCPs at least!</source>
        <translation>至少需要 3 个控制点！</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>The Transformation model for the imported data is different from the currently selected elipsoid.Please reselect the ellipsoid!</source>
        <translation>导入数据的转换模型与当前所选椭球不同，请重新选择椭球！</translation>
    </message>
    <message>
        <source>The Source Spheroid must be different with target Spheroid!</source>
        <translation>源椭球必须与目标椭球不同！</translation>
    </message>
    <message>
        <source>Stop Edit</source>
        <translation>停止编辑</translation>
    </message>
    <message>
        <source>Calculate Error!</source>
        <translation>计算出错！</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Please run calculation first and get a correct result !</source>
        <translation>请先进行计算并得到正确结果！</translation>
    </message>
    <message>
        <source>save result success!</source>
        <translation>保存结果成功！</translation>
    </message>
    <message>
        <source>Open Text File</source>
        <translation>打开文本文件</translation>
    </message>
    <message>
        <source>Text Files (*.txt);;CSV Files(*.csv)</source>
        <translation>文本文件 (*.txt);;CSV 文件(*.csv)</translation>
    </message>
    <message>
        <source>Export success!</source>
        <translation>导出成功！</translation>
    </message>
    <message>
        <source>Export failed!</source>
        <translation>导出失败！</translation>
    </message>
    <message>
        <source>This File is not Vaild!</source>
        <translation>该文件无效！</translation>
    </message>
    <message>
        <source>Quality report</source>
        <translation>质量报告</translation>
    </message>
</context>
<context>
    <name>ControlPointQuality</name>
    <message>
        <source>The control points are incomplete or hold a value that is not a number.</source>
        <translation>控制点不完整，或含有非数值。</translation>
    </message>
    <message>
        <source>Too few points: %1 given, the model needs at least %2.</source>
        <translation>点数太少：给出 %1 个，该模型至少需要 %2 个。</translation>
    </message>
    <message>
        <source>Point %1: its height is missing on one side, so its height residual and height test mean nothing.</source>
        <translation>点 %1：一侧缺少高程，其高程残差和高程检验没有意义。</translation>
    </message>
    <message>
        <source>The source points coincide: they fix no model.</source>
        <translation>源点重合，无法确定模型。</translation>
    </message>
    <message>
        <source>The points do not fix the model (identical or collinear points).</source>
        <translation>这些点无法确定模型（点重合或共线）。</translation>
    </message>
    <message>
        <source>No redundancy: %1 points fix the %2 parameters exactly, so sigma0, the standard deviations and the w-test are unavailable.</source>
        <translation>没有多余观测：%1 个点恰好确定 %2 个参数，无法给出单位权中误差、标准差和 w 检验。</translation>
    </message>
    <message>
        <source>Check residuals need at least %1 points.</source>
        <translation>检核残差至少需要 %1 个点。</translation>
    </message>
    <message>
        <source>Point %1: no check residual, the other points do not fix the model.</source>
        <translation>点 %1：没有检核残差，其余点无法确定模型。</translation>
    </message>
    <message>
        <source>The robust fit needs at least %1 points.</source>
        <translation>抗差估计至少需要 %1 个点。</translation>
    </message>
    <message>
        <source>The robust fit failed: the points it keeps do not fix the model.</source>
        <translation>抗差估计失败：保留的点无法确定模型。</translation>
    </message>
    <message>
        <source>The w-test needs a redundancy of at least 2 in plane and in height; these points do not give it.</source>
        <translation>w 检验要求平面和高程的多余观测数均至少为 2；这些点达不到。</translation>
    </message>
</context>
<context>
    <name>ControlPointReport</name>
    <message>
        <source>four-parameter (plane similarity)</source>
        <translation>四参数（平面相似变换）</translation>
    </message>
    <message>
        <source>seven-parameter (spatial similarity)</source>
        <translation>七参数（空间相似变换）</translation>
    </message>
    <message>
        <source>Point %1 holds a gross error in %2: w = %3 exceeds the critical value; check its number and coordinates, or leave it out (robust weight %4).</source>
        <translation>点 %1 的%2含有粗差：w = %3 超过临界值；请检查其点号和坐标，或不使用该点（抗差权 %4）。</translation>
    </message>
    <message>
        <source>height</source>
        <translation>高程</translation>
    </message>
    <message>
        <source>plane</source>
        <translation>平面</translation>
    </message>
    <message>
        <source>No point is named as a gross error.</source>
        <translation>未发现含粗差的点。</translation>
    </message>
    <message>
        <source>Control-point quality report</source>
        <translation>控制点质量报告</translation>
    </message>
    <message>
        <source>Model: %1</source>
        <translation>模型：%1</translation>
    </message>
    <message>
        <source>Source: %1</source>
        <translation>源：%1</translation>
    </message>
    <message>
        <source>Target: %1</source>
        <translation>目标：%1</translation>
    </message>
    <message>
        <source>Points: %1, observations: %2, parameters: %3, degrees of freedom: %4</source>
        <translation>点数：%1，观测数：%2，参数：%3，自由度：%4</translation>
    </message>
    <message>
        <source>sigma0 = %1 m (%2 degrees of freedom)</source>
        <translation>单位权中误差 = %1 m（自由度 %2）</translation>
    </message>
    <message>
        <source>Parameter</source>
        <translation>参数</translation>
    </message>
    <message>
        <source>Least squares</source>
        <translation>最小二乘</translation>
    </message>
    <message>
        <source>Std. dev.</source>
        <translation>标准差</translation>
    </message>
    <message>
        <source>Robust</source>
        <translation>抗差</translation>
    </message>
    <message>
        <source>Correlations</source>
        <translation>相关系数</translation>
    </message>
    <message>
        <source>w-test: significance %1 for all points together, %2 per observation; critical |w| %3 in plane</source>
        <translation>w 检验：全部点的显著性水平 %1，每个观测 %2；平面临界值 |w| %3</translation>
    </message>
    <message>
        <source>, %1 in height</source>
        <translation>，高程 %1</translation>
    </message>
    <message>
        <source>Robust fit: IGG III, k0 = %1, k1 = %2, %3 iterations</source>
        <translation>抗差估计：IGG III，k0 = %1，k1 = %2，迭代 %3 次</translation>
    </message>
    <message>
        <source>Point</source>
        <translation>点</translation>
    </message>
    <message>
        <source>North</source>
        <translation>北</translation>
    </message>
    <message>
        <source>East</source>
        <translation>东</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>高</translation>
    </message>
    <message>
        <source>Plane</source>
        <translation>平面</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>高程</translation>
    </message>
    <message>
        <source>Check plane</source>
        <translation>检核平面</translation>
    </message>
    <message>
        <source>Check height</source>
        <translation>检核高程</translation>
    </message>
    <message>
        <source>w plane</source>
        <translation>平面 w</translation>
    </message>
    <message>
        <source>w height</source>
        <translation>高程 w</translation>
    </message>
    <message>
        <source>Weight</source>
        <translation>权</translation>
    </message>
    <message>
        <source>Flag</source>
        <translation>标记</translation>
    </message>
    <message>
        <source>gross error</source>
        <translation>粗差</translation>
    </message>
    <message>
        <source>cannot write the PDF &quot;%1&quot;</source>
        <translation>无法写入 PDF“%1”</translation>
    </message>
    <message>
        <source>Residual vectors (plane)</source>
        <translation>残差向量（平面）</translation>
    </message>
    <message>
        <source>Ground: %1</source>
        <translation>地面：%1</translation>
    </message>
    <message>
        <source>Residual: %1</source>
        <translation>残差：%1</translation>
    </message>
</context>
<context>
    <name>ControlPointReportDlg</name>
    <message>
        <source>Quality report</source>
        <translation>质量报告</translation>
    </message>
    <message>
        <source>Save as PDF</source>
        <translation>另存为 PDF</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>PDF Files (*.pdf)</source>
        <translation>PDF 文件 (*.pdf)</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>The report was saved as &quot;%1&quot;.</source>
        <translation>报告已保存为“%1”。</translation>
    </message>
    <message>
        <source>Adds the points and their residual vectors, drawn longer by a stated factor, to the map</source>
        <translation>将控制点及其残差向量（按标明的倍数放大绘制）添加到地图</translation>
    </message>
    <message>
        <source>Show on map</source>
        <translation>在地图上显示</translation>
    </message>
</context>
<context>
    <name>DataProjTransCommand</name>
    <message>
        <source>The algorithm library fails to load!</source>
        <translation>算法库加载失败！</translation>
    </message>
    <message>
        <source>Reproject</source>
        <translation>投影变换</translation>
    </message>
    <message>
        <source>Data spatial reference system transformation process complete!</source>
        <translation>数据空间参考变换完成！</translation>
    </message>
    <message>
        <source>Coordinate transformation</source>
        <translation>坐标转换</translation>
    </message>
    <message>
        <source>Reproject Fail!</source>
        <translation>投影变换失败！</translation>
    </message>
    <message>
        <source>Data spatial reference system transformation process failed!</source>
        <translation>数据空间参考变换失败！</translation>
    </message>
</context>
<context>
    <name>DataProjTransDlg</name>
    <message>
        <source>Data Coordinate Conversion</source>
        <translation>数据坐标转换</translation>
    </message>
    <message>
        <source>Input File:</source>
        <translation>输入文件：</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>Input Coordinate System:</source>
        <translation>输入坐标系：</translation>
    </message>
    <message>
        <source>Output File:</source>
        <translation>输出文件：</translation>
    </message>
    <message>
        <source>Output Folder:</source>
        <translation>输出文件夹：</translation>
    </message>
    <message>
        <source>Output Coordinate System:</source>
        <translation>输出坐标系：</translation>
    </message>
    <message>
        <source>Check if there is a code number</source>
        <translation>Y 坐标含带号</translation>
    </message>
    <message>
        <source>Seven-parameter Conversion:</source>
        <translation>七参数转换：</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Transform</source>
        <translation>转换</translation>
    </message>
    <message>
        <source>Open  Data</source>
        <translation>打开数据</translation>
    </message>
    <message>
        <source>Raster Files(*.tiff *.tif *.img);; Shape Files(*.shp);; PGDB Files(*.mdb)</source>
        <translation>栅格文件(*.tiff *.tif *.img);; Shape 文件(*.shp);; PGDB 文件(*.mdb)</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>File Abnormity!</source>
        <translation>文件异常！</translation>
    </message>
    <message>
        <source>This Data has no spatialreference!</source>
        <translation>该数据没有空间参考！</translation>
    </message>
    <message>
        <source>Please select input file!</source>
        <translation>请选择输入文件！</translation>
    </message>
    <message>
        <source>GeoTIFF Files(*.tif *.tiff);;ERDAS IMG(*.img);;ENVI IMG(*.img)</source>
        <translation>GeoTIFF 文件(*.tif *.tiff);;ERDAS IMG(*.img);;ENVI IMG(*.img)</translation>
    </message>
    <message>
        <source>Shape Files(*.shp)</source>
        <translation>Shape 文件(*.shp)</translation>
    </message>
    <message>
        <source>Output File</source>
        <translation>输出文件</translation>
    </message>
    <message>
        <source>GeoTIFF Files(*.tif *.tiff)</source>
        <translation>GeoTIFF 文件(*.tif *.tiff)</translation>
    </message>
    <message>
        <source>ERDAS IMG(*.img)</source>
        <translation>ERDAS IMG(*.img)</translation>
    </message>
    <message>
        <source>Open Directory</source>
        <translation>打开文件夹</translation>
    </message>
    <message>
        <source>Transform 7Parameter:</source>
        <translation>七参数转换：</translation>
    </message>
    <message>
        <source>Transform 4Parameter:</source>
        <translation>四参数转换：</translation>
    </message>
    <message>
        <source>The input file has no space for reference!</source>
        <translation>输入文件没有空间参考！</translation>
    </message>
    <message>
        <source>The output file is empty!</source>
        <translation>输出文件为空！</translation>
    </message>
    <message>
        <source>The output file has no space for reference!</source>
        <translation>输出文件没有空间参考！</translation>
    </message>
    <message>
        <source>The input file does not match the output file type!</source>
        <translation>输入文件与输出文件类型不匹配！</translation>
    </message>
    <message>
        <source>Please confirm whether the correct 7-parameter model has been set. If it has been set,please click OK. If not, please click Cancel to go back to set.</source>
        <translation>请确认是否已设置正确的七参数模型。已设置请单击“确定”；未设置请单击“取消”返回设置。</translation>
    </message>
</context>
<context>
    <name>FileDataProjTransDlg</name>
    <message>
        <source>File Coordinate Conversion</source>
        <translation>文件坐标转换</translation>
    </message>
    <message>
        <source>File Format:</source>
        <translation>文件格式：</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>格式</translation>
    </message>
    <message>
        <source>Input File:</source>
        <translation>输入文件：</translation>
    </message>
    <message>
        <source>...</source>
        <translation>...</translation>
    </message>
    <message>
        <source>Output File:</source>
        <translation>输出文件：</translation>
    </message>
    <message>
        <source>Original Coordinate System:</source>
        <translation>原坐标系：</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>Output Coordinate System:</source>
        <translation>输出坐标系：</translation>
    </message>
    <message>
        <source>7Parameter:</source>
        <translation>七参数：</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Check if there is a code number</source>
        <translation>Y 坐标含带号</translation>
    </message>
    <message>
        <source>Transform</source>
        <translation>转换</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Point ID</source>
        <translation>点号</translation>
    </message>
    <message>
        <source>Src Y</source>
        <translation>源 Y</translation>
    </message>
    <message>
        <source>Src X</source>
        <translation>源 X</translation>
    </message>
    <message>
        <source>Src Z</source>
        <translation>源 Z</translation>
    </message>
    <message>
        <source>Target Y</source>
        <translation>目标 Y</translation>
    </message>
    <message>
        <source>Target X</source>
        <translation>目标 X</translation>
    </message>
    <message>
        <source>Target Z</source>
        <translation>目标 Z</translation>
    </message>
    <message>
        <source>Open Text File</source>
        <translation>打开文本文件</translation>
    </message>
    <message>
        <source>Text Files (*.txt);;CSV Files(*.csv)</source>
        <translation>文本文件 (*.txt);;CSV 文件(*.csv)</translation>
    </message>
    <message>
        <source>Coordinate Conversion</source>
        <translation>坐标转换</translation>
    </message>
    <message>
        <source>Not enough memory to read the file!</source>
        <translation>内存不足，无法读取文件！</translation>
    </message>
    <message>
        <source>Input data is incorrect, please reset the file format in the interface!</source>
        <translation>输入数据有误，请在界面中重新设置文件格式！</translation>
    </message>
    <message>
        <source>Failed to open the file,please try again!</source>
        <translation>打开文件失败，请重试！</translation>
    </message>
    <message>
        <source>The coordinate Y may have a code,please remove the code!</source>
        <translation>Y 坐标可能含带号，请去掉带号！</translation>
    </message>
    <message>
        <source>Output File</source>
        <translation>输出文件</translation>
    </message>
    <message>
        <source>Text Files(*.txt);;CSV Files(*.csv)</source>
        <translation>文本文件(*.txt);;CSV 文件(*.csv)</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Source Spatial Reference is same with Target!</source>
        <translation>源空间参考与目标空间参考相同！</translation>
    </message>
    <message>
        <source>4Parameter:</source>
        <translation>四参数：</translation>
    </message>
    <message>
        <source>Select correct input file!</source>
        <translation>请选择正确的输入文件！</translation>
    </message>
    <message>
        <source>Select correct output file!</source>
        <translation>请选择正确的输出文件！</translation>
    </message>
    <message>
        <source>Input file is matching to output file!</source>
        <translation>输入文件与输出文件相同！</translation>
    </message>
    <message>
        <source>Select original projection!</source>
        <translation>请选择原投影！</translation>
    </message>
    <message>
        <source>Please select the output coordinate system!</source>
        <translation>请选择输出坐标系！</translation>
    </message>
    <message>
        <source>Input file and output file projection same,do not need to transform!</source>
        <translation>输入文件与输出文件投影相同，无需转换！</translation>
    </message>
    <message>
        <source>Not enough memory to convert the file!</source>
        <translation>内存不足，无法转换文件！</translation>
    </message>
</context>
<context>
    <name>FileFormatUI</name>
    <message>
        <source>FileFormatUI</source>
        <translation>文本文件格式</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>名称：</translation>
    </message>
    <message>
        <source>Separator:</source>
        <translation>分隔符：</translation>
    </message>
    <message>
        <source>Data list</source>
        <translation>字段列表</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清空</translation>
    </message>
    <message>
        <source>Is there a title</source>
        <translation>含标题行</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>PointID</source>
        <translation>点号</translation>
    </message>
    <message>
        <source>Latitude</source>
        <translation>纬度</translation>
    </message>
    <message>
        <source>Longitude</source>
        <translation>经度</translation>
    </message>
    <message>
        <source>altitude</source>
        <translation>高度</translation>
    </message>
    <message>
        <source>other</source>
        <translation>其他</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>有标题</translation>
    </message>
    <message>
        <source>NoTitle</source>
        <translation>无标题</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>The same field has been added,please read it!</source>
        <translation>该字段已添加，请检查！</translation>
    </message>
    <message>
        <source>The name can not be empty!</source>
        <translation>名称不能为空！</translation>
    </message>
    <message>
        <source>The name can not contain / \ : * ? &quot; &lt; &gt; | or control characters!</source>
        <translation>名称不能包含 / \ : * ? &quot; &lt; &gt; | 或控制字符！</translation>
    </message>
    <message>
        <source>The name can not contain blanks!</source>
        <translation>名称不能包含空格！</translation>
    </message>
    <message>
        <source>The Separator can not be empty!</source>
        <translation>分隔符不能为空！</translation>
    </message>
    <message>
        <source>There is a file with the same name.Please reset the file name!</source>
        <translation>已存在同名文件，请重新设置文件名！</translation>
    </message>
    <message>
        <source>Please enter the correct file format!</source>
        <translation>请输入正确的文件格式！</translation>
    </message>
    <message>
        <source>The output file must have longitude and latitude!</source>
        <translation>输出文件必须包含经度和纬度！</translation>
    </message>
    <message>
        <source>General format1</source>
        <translation>通用格式1</translation>
    </message>
    <message>
        <source>General format2</source>
        <translation>通用格式2</translation>
    </message>
</context>
<context>
    <name>FileFormatXMLManagerDlg</name>
    <message>
        <source>FileFormatXMLManagerDlg</source>
        <translation>文本文件格式管理</translation>
    </message>
    <message>
        <source>FileFormatList</source>
        <translation>文件格式列表</translation>
    </message>
    <message>
        <source>SelectAll</source>
        <translation>全选</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>HelpMenu</name>
    <message>
        <source>&amp;Help</source>
        <translation>帮助(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;User Guide</source>
        <translation>用户指南(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>语言(&amp;L)</translation>
    </message>
    <message>
        <source>System Language</source>
        <translation>跟随系统</translation>
    </message>
    <message>
        <source>&amp;About kivdesk</source>
        <translation>关于 kivdesk(&amp;A)</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>语言</translation>
    </message>
    <message>
        <source>The language changes the next time kivdesk starts.</source>
        <translation>语言将在下次启动 kivdesk 时生效。</translation>
    </message>
</context>
<context>
    <name>KivAdapterUI::SpatialReferenceSelectorDlg</name>
    <message>
        <source>The definition of %1 cannot be read.</source>
        <translation>无法读取 %1 的定义。</translation>
    </message>
    <message>
        <source>Area of use: %1</source>
        <translation>适用范围：%1</translation>
    </message>
    <message>
        <source>Bounds: west %1, south %2, east %3, north %4</source>
        <translation>范围：西 %1，南 %2，东 %3，北 %4</translation>
    </message>
    <message>
        <source>Replaced by %1.</source>
        <translation>已被 %1 取代。</translation>
    </message>
    <message>
        <source>Recently Used</source>
        <translation>最近使用</translation>
    </message>
    <message>
        <source>Geographic Coordinate Systems</source>
        <translation>地理坐标系</translation>
    </message>
    <message>
        <source>Projected Coordinate Systems</source>
        <translation>投影坐标系</translation>
    </message>
    <message>
        <source>1 system</source>
        <translation>1 个坐标系</translation>
    </message>
    <message>
        <source>%1 systems</source>
        <translation>%1 个坐标系</translation>
    </message>
</context>
<context>
    <name>KivApplication</name>
    <message>
        <source>There is not enough memory to finish the operation.</source>
        <translation>内存不足，无法完成操作。</translation>
    </message>
    <message>
        <source>The operation stopped with an error: %1</source>
        <translation>操作因错误而中止：%1</translation>
    </message>
    <message>
        <source>The operation stopped with an unknown error.</source>
        <translation>操作因未知错误而中止。</translation>
    </message>
    <message>
        <source>kivdesk</source>
        <translation>kivdesk</translation>
    </message>
</context>
<context>
    <name>LayerPanel</name>
    <message>
        <source>Layers</source>
        <translation>图层</translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation>上移</translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation>下移</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Zoom to Layer</source>
        <translation>缩放至图层</translation>
    </message>
    <message>
        <source>Draw the selected layer above the one over it</source>
        <translation>将所选图层上移一层绘制</translation>
    </message>
    <message>
        <source>Draw the selected layer below the one under it</source>
        <translation>将所选图层下移一层绘制</translation>
    </message>
    <message>
        <source>Take the selected layer out of the map</source>
        <translation>从地图中移除所选图层</translation>
    </message>
    <message>
        <source>Show the whole of the selected layer</source>
        <translation>显示所选图层全图</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>上移</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>下移</translation>
    </message>
</context>
<context>
    <name>LayerSource</name>
    <message>
        <source>%1 does not exist.</source>
        <translation>%1 不存在。</translation>
    </message>
    <message>
        <source>GDAL cannot open %1.</source>
        <translation>GDAL 无法打开 %1。</translation>
    </message>
    <message>
        <source>GDAL cannot open %1: %2</source>
        <translation>GDAL 无法打开 %1：%2</translation>
    </message>
    <message>
        <source>%1 holds neither raster bands nor vector layers.</source>
        <translation>%1 既没有栅格波段也没有矢量图层。</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Map</source>
        <translation>地图</translation>
    </message>
    <message>
        <source>kivdesk</source>
        <translation>kivdesk</translation>
    </message>
    <message>
        <source>Layers</source>
        <translation>图层</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>退出(&amp;X)</translation>
    </message>
    <message>
        <source>The plug-in %1 has no command %2.</source>
        <translation>插件 %1 没有命令 %2。</translation>
    </message>
    <message>
        <source>Coordinate Transformation</source>
        <translation>坐标转换</translation>
    </message>
    <message>
        <source>Plug-ins</source>
        <translation>插件</translation>
    </message>
    <message>
        <source>Command failed</source>
        <translation>命令失败</translation>
    </message>
    <message>
        <source>The command stopped with an unknown error.</source>
        <translation>命令因未知错误而中止。</translation>
    </message>
    <message>
        <source>&amp;Add Data...</source>
        <translation>添加数据(&amp;A)...</translation>
    </message>
    <message>
        <source>Add raster or vector files to the map</source>
        <translation>向地图添加栅格或矢量文件</translation>
    </message>
    <message>
        <source>Zoom to All</source>
        <translation>全图显示</translation>
    </message>
    <message>
        <source>Show every visible layer whole</source>
        <translation>完整显示所有可见图层</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>视图(&amp;V)</translation>
    </message>
    <message>
        <source>Add Data</source>
        <translation>添加数据</translation>
    </message>
    <message>
        <source>Rasters and vectors (*.tif *.tiff *.img *.vrt *.jpg *.png *.asc *.shp *.gpkg *.geojson *.json *.kml *.gml *.tab *.mif);;Rasters (*.tif *.tiff *.img *.vrt *.jpg *.png *.asc);;Vectors (*.shp *.gpkg *.geojson *.json *.kml *.gml *.tab *.mif);;All files (*)</source>
        <translation>栅格和矢量 (*.tif *.tiff *.img *.vrt *.jpg *.png *.asc *.shp *.gpkg *.geojson *.json *.kml *.gml *.tab *.mif);;栅格 (*.tif *.tiff *.img *.vrt *.jpg *.png *.asc);;矢量 (*.shp *.gpkg *.geojson *.json *.kml *.gml *.tab *.mif);;所有文件 (*)</translation>
    </message>
    <message>
        <source>X: %1  Y: %2</source>
        <translation>X：%1  Y：%2</translation>
    </message>
    <message>
        <source>  Lon: %1  Lat: %2</source>
        <translation>  经度：%1  纬度：%2</translation>
    </message>
    <message>
        <source>%1 finished with warnings</source>
        <translation>%1 已完成，但有警告</translation>
    </message>
    <message>
        <source>%1: warnings</source>
        <translation>%1：警告</translation>
    </message>
</context>
<context>
    <name>MapView</name>
    <message>
        <source>No layers yet. File &gt; Add Data shows rasters and vectors; the Coordinate Transformation menu converts points, coordinate files and datasets, and computes and stores transformation models.</source>
        <translation>还没有图层。“文件 &gt; 添加数据”可显示栅格和矢量数据；“坐标转换”菜单可转换点、坐标文件和数据集，并可计算和保存转换模型。</translation>
    </message>
</context>
<context>
    <name>NewGeoCoorSysDlg</name>
    <message>
        <source>Dialog</source>
        <translation>对话框</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>名称：</translation>
    </message>
    <message>
        <source>Datum</source>
        <translation>基准面</translation>
    </message>
    <message>
        <source>Spheroid</source>
        <translation>椭球</translation>
    </message>
    <message>
        <source>Semimajor axis</source>
        <translation>长半轴</translation>
    </message>
    <message>
        <source>Semiminor axis</source>
        <translation>短半轴</translation>
    </message>
    <message>
        <source>Inverse flattening</source>
        <translation>扁率倒数</translation>
    </message>
    <message>
        <source>Angular Unit</source>
        <translation>角度单位</translation>
    </message>
    <message>
        <source>Radians/Unit</source>
        <translation>弧度/单位</translation>
    </message>
    <message>
        <source>Central Merdian</source>
        <translation>中央经线</translation>
    </message>
    <message>
        <source>°</source>
        <translation>°</translation>
    </message>
    <message>
        <source>′</source>
        <translation>′</translation>
    </message>
    <message>
        <source>″</source>
        <translation>″</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>New Geographic Coordinate System</source>
        <translation>新建地理坐标系</translation>
    </message>
    <message>
        <source>Parse spatial reference file failed!</source>
        <translation>解析空间参考文件失败！</translation>
    </message>
    <message>
        <source>Read spatial reference file failed!</source>
        <translation>读取空间参考文件失败！</translation>
    </message>
    <message>
        <source>The current projection coordinate system does not support modification!</source>
        <translation>当前投影坐标系不支持修改！</translation>
    </message>
    <message>
        <source>Please enter a valid name of the new geographic coordinate system!</source>
        <translation>请输入新地理坐标系的有效名称！</translation>
    </message>
</context>
<context>
    <name>NewProjCoorSysDlg</name>
    <message>
        <source>Dialog</source>
        <translation>对话框</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>名称：</translation>
    </message>
    <message>
        <source>Projection</source>
        <translation>投影</translation>
    </message>
    <message>
        <source>Linear Unit</source>
        <translation>长度单位</translation>
    </message>
    <message>
        <source>Merters/Unit</source>
        <translation>米/单位</translation>
    </message>
    <message>
        <source>Geographic Coordinate System</source>
        <translation>地理坐标系</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>New</source>
        <translation>新建</translation>
    </message>
    <message>
        <source>Modify</source>
        <translation>修改</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>New Projection Coordinate System</source>
        <translation>新建投影坐标系</translation>
    </message>
    <message>
        <source>Parse spatial reference file failed!</source>
        <translation>解析空间参考文件失败！</translation>
    </message>
    <message>
        <source>Read spatial reference file failed!</source>
        <translation>读取空间参考文件失败！</translation>
    </message>
    <message>
        <source>Parameter</source>
        <translation>参数</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>值</translation>
    </message>
    <message>
        <source>Spatial Reference type must be geographic coordinate system!</source>
        <translation>空间参考类型必须是地理坐标系！</translation>
    </message>
    <message>
        <source>Please enter a valid name of the new projection coordinate system!</source>
        <translation>请输入新投影坐标系的有效名称！</translation>
    </message>
    <message>
        <source>Please enter a valid geographic coordinate system!</source>
        <translation>请输入有效的地理坐标系！</translation>
    </message>
    <message>
        <source>The current projection coordinate system does not support modification!</source>
        <translation>当前投影坐标系不支持修改！</translation>
    </message>
</context>
<context>
    <name>OutputSpatialReferenceDlg</name>
    <message>
        <source>Dialog</source>
        <translation>对话框</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>名称：</translation>
    </message>
    <message>
        <source>Content:</source>
        <translation>内容：</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>Select a predefined projection file</source>
        <translation>选择预定义的投影</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Import projection from a exsisted file</source>
        <translation>从已有文件导入投影</translation>
    </message>
    <message>
        <source>New</source>
        <translation>新建</translation>
    </message>
    <message>
        <source>To construct a new spatial reference system</source>
        <translation>新建空间参考</translation>
    </message>
    <message>
        <source>Modify</source>
        <translation>修改</translation>
    </message>
    <message>
        <source>Modify the spatial reference system</source>
        <translation>修改空间参考</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清空</translation>
    </message>
    <message>
        <source>Clear the spatial reference system</source>
        <translation>清除空间参考</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>Export the spatial reference system</source>
        <translation>导出空间参考</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Spatial Reference Information</source>
        <translation>空间参考信息</translation>
    </message>
    <message>
        <source>Geography Coordinate System</source>
        <translation>地理坐标系</translation>
    </message>
    <message>
        <source>Projection Coordinate System</source>
        <translation>投影坐标系</translation>
    </message>
    <message>
        <source>The projection file is null!</source>
        <translation>投影文件为空！</translation>
    </message>
    <message>
        <source>Data doesn&apos;t have spatial reference!</source>
        <translation>数据没有空间参考！</translation>
    </message>
    <message>
        <source>Geographic Coordinate System</source>
        <translation>地理坐标系</translation>
    </message>
    <message>
        <source>Export success!</source>
        <translation>导出成功！</translation>
    </message>
</context>
<context>
    <name>OutputSpatialRefernceDlg</name>
    <message>
        <source>Import From File</source>
        <translation>从文件导入</translation>
    </message>
    <message>
        <source>Shape Files (*.shp);;Raster Files (*.tif *.tiff *.img *.ldf *.dat *.1bd *.1b);;Image Files(*.bmp *.jpg);;Projection Files(*.prj);;All files(*.*)</source>
        <translation>Shape 文件 (*.shp);;栅格文件 (*.tif *.tiff *.img *.ldf *.dat *.1bd *.1b);;图像文件(*.bmp *.jpg);;投影文件(*.prj);;所有文件(*.*)</translation>
    </message>
    <message>
        <source>Projection Files(*.prj);;All files(*.*)</source>
        <translation>投影文件(*.prj);;所有文件(*.*)</translation>
    </message>
</context>
<context>
    <name>PluginLoader</name>
    <message>
        <source>The plug-in library %1 cannot be loaded: %2</source>
        <translation>无法加载插件库 %1：%2</translation>
    </message>
    <message>
        <source>The plug-in library %1 has no GetPluginModule entry point.</source>
        <translation>插件库 %1 没有 GetPluginModule 入口。</translation>
    </message>
    <message>
        <source>The plug-in library %1 gave no module.</source>
        <translation>插件库 %1 未提供模块。</translation>
    </message>
</context>
<context>
    <name>PluginManifest</name>
    <message>
        <source>Coordinate Transformation</source>
        <translation>坐标转换</translation>
    </message>
    <message>
        <source>Point Conversion</source>
        <translation>点坐标转换</translation>
    </message>
    <message>
        <source>Convert one point between two coordinate systems</source>
        <translation>在两个坐标系之间转换单个点</translation>
    </message>
    <message>
        <source>File Conversion</source>
        <translation>文件坐标转换</translation>
    </message>
    <message>
        <source>Convert every point of a coordinate text file</source>
        <translation>转换坐标文本文件中的所有点</translation>
    </message>
    <message>
        <source>Reproject Dataset</source>
        <translation>数据投影变换</translation>
    </message>
    <message>
        <source>Reproject a raster or vector dataset</source>
        <translation>对栅格或矢量数据进行投影变换</translation>
    </message>
    <message>
        <source>Batch Reproject</source>
        <translation>批量投影变换</translation>
    </message>
    <message>
        <source>Reproject several datasets into a folder</source>
        <translation>将多个数据投影变换到一个文件夹</translation>
    </message>
    <message>
        <source>Calculate 4 Parameters</source>
        <translation>计算四参数</translation>
    </message>
    <message>
        <source>Compute a four-parameter model from control points</source>
        <translation>由控制点计算四参数模型</translation>
    </message>
    <message>
        <source>Calculate 7 Parameters</source>
        <translation>计算七参数</translation>
    </message>
    <message>
        <source>Compute a seven-parameter model from control points</source>
        <translation>由控制点计算七参数模型</translation>
    </message>
    <message>
        <source>Enter 4 Parameters</source>
        <translation>输入四参数</translation>
    </message>
    <message>
        <source>Type a known four-parameter model and store it</source>
        <translation>输入已知的四参数模型并保存</translation>
    </message>
    <message>
        <source>Enter 7 Parameters</source>
        <translation>输入七参数</translation>
    </message>
    <message>
        <source>Type a known seven-parameter model and store it</source>
        <translation>输入已知的七参数模型并保存</translation>
    </message>
</context>
<context>
    <name>PointCoordsTransformDlg</name>
    <message>
        <source>Point Coordinate Conversion</source>
        <translation>点坐标转换</translation>
    </message>
    <message>
        <source>Seven-parameter Conversion:</source>
        <translation>七参数转换：</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Check if there is a code number</source>
        <translation>Y 坐标含带号</translation>
    </message>
    <message>
        <source>Original Coordinate System:</source>
        <translation>原坐标系：</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>Converted Coordinates</source>
        <translation>转换后坐标</translation>
    </message>
    <message>
        <source>Degree</source>
        <translation>度</translation>
    </message>
    <message>
        <source>dd゜mm′ss″</source>
        <translation>度゜分′秒″</translation>
    </message>
    <message>
        <source>Meter</source>
        <translation>米</translation>
    </message>
    <message>
        <source>B</source>
        <translation>B</translation>
    </message>
    <message>
        <source>L</source>
        <translation>L</translation>
    </message>
    <message>
        <source>H</source>
        <translation>H</translation>
    </message>
    <message>
        <source>Target Coordinate System:</source>
        <translation>目标坐标系：</translation>
    </message>
    <message>
        <source>Conversion Result</source>
        <translation>转换结果</translation>
    </message>
    <message>
        <source>Transform</source>
        <translation>转换</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Source Spatial Reference is same with Target!</source>
        <translation>源空间参考与目标空间参考相同！</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>Transform 4Parameter:</source>
        <translation>四参数转换：</translation>
    </message>
    <message>
        <source>Transform 7Parameter:</source>
        <translation>七参数转换：</translation>
    </message>
    <message>
        <source>Please enter coordinates!</source>
        <translation>请输入坐标！</translation>
    </message>
    <message>
        <source>Please enter original coordinate system!</source>
        <translation>请输入原坐标系！</translation>
    </message>
    <message>
        <source>Please enter target coordinate system!</source>
        <translation>请输入目标坐标系！</translation>
    </message>
</context>
<context>
    <name>ProgressIndicator</name>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Cannot read the plug-in manifest %1: %2</source>
        <translation>无法读取插件清单 %1：%2</translation>
    </message>
    <message>
        <source>The plug-in manifest %1 is not valid XML (line %2, column %3): %4</source>
        <translation>插件清单 %1 不是有效的 XML（第 %2 行，第 %3 列）：%4</translation>
    </message>
    <message>
        <source>The plug-in manifest %1 has a plug-in without a library (line %2).</source>
        <translation>插件清单 %1 中有未指定库的插件（第 %2 行）。</translation>
    </message>
    <message>
        <source>Plug-ins</source>
        <translation>插件</translation>
    </message>
</context>
<context>
    <name>RasterLayerSource</name>
    <message>
        <source>%1 cannot be drawn in the map&apos;s coordinate system: %2</source>
        <translation>%1 无法在地图坐标系中绘制：%2</translation>
    </message>
</context>
<context>
    <name>ResidualLayer</name>
    <message>
        <source>Control-point residuals (vectors x %1)</source>
        <translation>控制点残差（向量放大 %1 倍）</translation>
    </message>
    <message>
        <source>Cannot write the residual layer &quot;%1&quot;: %2</source>
        <translation>无法写出残差图层“%1”：%2</translation>
    </message>
    <message>
        <source>the points&apos; positions are unknown.</source>
        <translation>控制点的位置未知。</translation>
    </message>
    <message>
        <source>GDAL has no GeoPackage driver.</source>
        <translation>GDAL 没有 GeoPackage 驱动。</translation>
    </message>
</context>
<context>
    <name>Save4ParamsResultDlg</name>
    <message>
        <source>Save4ParamsResultDlg</source>
        <translation>保存四参数</translation>
    </message>
    <message>
        <source>Source SpatialReference</source>
        <translation>源空间参考</translation>
    </message>
    <message>
        <source>select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>Target SpatialReference</source>
        <translation>目标空间参考</translation>
    </message>
    <message>
        <source>Transform model name</source>
        <translation>转换模型名称</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Please input source spatialreference name! </source>
        <translation>请输入源空间参考名称！</translation>
    </message>
    <message>
        <source>Please input target spatialreference name! </source>
        <translation>请输入目标空间参考名称！</translation>
    </message>
    <message>
        <source>Please input transform model name! </source>
        <translation>请输入转换模型名称！</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Wherher to replace it or not? </source>
        <translation>该转换模型名称已存在，是否替换？</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Please input another one! </source>
        <translation>该转换模型名称已存在，请输入其他名称！</translation>
    </message>
    <message>
        <source>save result failed!</source>
        <translation>保存结果失败！</translation>
    </message>
</context>
<context>
    <name>Save7ParamsResultDlg</name>
    <message>
        <source>Save7ParamsResultDlg</source>
        <translation>保存七参数</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>文本</translation>
    </message>
    <message>
        <source>Transform model name:</source>
        <translation>转换模型名称：</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>7 parameters</source>
        <translation>七参数</translation>
    </message>
    <message>
        <source>Please input source spatialreference name! </source>
        <translation>请输入源空间参考名称！</translation>
    </message>
    <message>
        <source>Please input target spatialreference name! </source>
        <translation>请输入目标空间参考名称！</translation>
    </message>
    <message>
        <source>Please input transform model name! </source>
        <translation>请输入转换模型名称！</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Wherher to replace it or not? </source>
        <translation>该转换模型名称已存在，是否替换？</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Please input another one! </source>
        <translation>该转换模型名称已存在，请输入其他名称！</translation>
    </message>
    <message>
        <source>save result failed!</source>
        <translation>保存结果失败！</translation>
    </message>
</context>
<context>
    <name>Set4ParamsDlg</name>
    <message>
        <source>Set 4 Params</source>
        <translation>输入四参数</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation>参数</translation>
    </message>
    <message>
        <source>DX(m)</source>
        <translation>DX(米)</translation>
    </message>
    <message>
        <source>DY(m)</source>
        <translation>DY(米)</translation>
    </message>
    <message>
        <source>T(゜)</source>
        <translation>T(゜)</translation>
    </message>
    <message>
        <source>K</source>
        <translation>K</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Set Coordinate System</source>
        <translation>设置坐标系</translation>
    </message>
    <message>
        <source>Source SpatialReference</source>
        <translation>源空间参考</translation>
    </message>
    <message>
        <source>select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>Target SpatialReference</source>
        <translation>目标空间参考</translation>
    </message>
    <message>
        <source>Transform model name</source>
        <translation>转换模型名称</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Please select a  Projected Coordinate System! </source>
        <translation>请选择投影坐标系！</translation>
    </message>
    <message>
        <source> 4 parameters  is saved successfully !</source>
        <translation>  四参数  保存成功！</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>Open Text File</source>
        <translation>打开文本文件</translation>
    </message>
    <message>
        <source>Text Files (*.txt);;CSV Files(*.csv)</source>
        <translation>文本文件 (*.txt);;CSV 文件(*.csv)</translation>
    </message>
    <message>
        <source>Please input valid parameter ! </source>
        <translation>请输入有效的参数！</translation>
    </message>
    <message>
        <source>Please input source spatialreference name! </source>
        <translation>请输入源空间参考名称！</translation>
    </message>
    <message>
        <source>Please input target spatialreference name! </source>
        <translation>请输入目标空间参考名称！</translation>
    </message>
    <message>
        <source>Please input transform model name! </source>
        <translation>请输入转换模型名称！</translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Wherher to replace it or not? </source>
        <translation>该转换模型名称已存在，是否替换？</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Please input another one! </source>
        <translation>该转换模型名称已存在，请输入其他名称！</translation>
    </message>
    <message>
        <source>save result failed!</source>
        <translation>保存结果失败！</translation>
    </message>
</context>
<context>
    <name>Set7ParamsDlg</name>
    <message>
        <source>Set 7 Params</source>
        <translation>输入七参数</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation>参数</translation>
    </message>
    <message>
        <source>DX(m)</source>
        <translation>DX(米)</translation>
    </message>
    <message>
        <source>DY(m)</source>
        <translation>DY(米)</translation>
    </message>
    <message>
        <source>DZ(m)</source>
        <translation>DZ(米)</translation>
    </message>
    <message>
        <source>ω(″)</source>
        <translation>ω(″)</translation>
    </message>
    <message>
        <source>κ(″)</source>
        <translation>κ(″)</translation>
    </message>
    <message>
        <source>γ(″)</source>
        <translation>γ(″)</translation>
    </message>
    <message>
        <source>m</source>
        <translation>m</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Set Coordinate System</source>
        <translation>设置坐标系</translation>
    </message>
    <message>
        <source>Source Ellipsoid</source>
        <translation>源椭球</translation>
    </message>
    <message>
        <source>select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>Target Ellipsoid</source>
        <translation>目标椭球</translation>
    </message>
    <message>
        <source>Transform model name</source>
        <translation>转换模型名称</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>The Source Spheroid must be different with target Spheroid!</source>
        <translation>源椭球必须与目标椭球不同！</translation>
    </message>
    <message>
        <source> 7 parameters  is saved successfully !</source>
        <translation>  七参数  保存成功！</translation>
    </message>
    <message>
        <source>Open Text File</source>
        <translation>打开文本文件</translation>
    </message>
    <message>
        <source>Text Files (*.txt);;CSV Files(*.csv)</source>
        <translation>文本文件 (*.txt);;CSV 文件(*.csv)</translation>
    </message>
    <message>
        <source>Please input valid parameter ! </source>
        <translation>请输入有效的参数！</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Please input source spatialreference name! </source>
        <translation>请输入源空间参考名称！</translation>
    </message>
    <message>
        <source>Please input target spatialreference name! </source>
        <translation>请输入目标空间参考名称！</translation>
    </message>
    <message>
        <source>Please input transform model name! </source>
        <translation>请输入转换模型名称！</translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Wherher to replace it or not? </source>
        <translation>该转换模型名称已存在，是否替换？</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Please input another one! </source>
        <translation>该转换模型名称已存在，请输入其他名称！</translation>
    </message>
    <message>
        <source>save result failed!</source>
        <translation>保存结果失败！</translation>
    </message>
</context>
<context>
    <name>SpatialReferenceSelectorDlg</name>
    <message>
        <source>Select Spatial Reference</source>
        <translation>选择空间参考</translation>
    </message>
    <message>
        <source>Filter:</source>
        <translation>筛选：</translation>
    </message>
    <message>
        <source>Words of the name, or a code such as 4214 or EPSG:4214</source>
        <translation>名称中的词，或代码，如 4214 或 EPSG:4214</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Code</source>
        <translation>代码</translation>
    </message>
</context>
<context>
    <name>ToolbarTexts</name>
    <message>
        <source>CoordsTransform_PointCoordsTransCommand</source>
        <translation>点转换</translation>
    </message>
    <message>
        <source>CoordsTransform_FileDataProjTransCommand</source>
        <translation>文件转换</translation>
    </message>
    <message>
        <source>CoordsTransform_DataProjTransCommand</source>
        <translation>数据投影</translation>
    </message>
    <message>
        <source>CoordsTransform_BatchProjectTrans</source>
        <translation>批量投影</translation>
    </message>
    <message>
        <source>CoordsTransform_4params</source>
        <translation>计算四参数</translation>
    </message>
    <message>
        <source>CoordsTransform_7params</source>
        <translation>计算七参数</translation>
    </message>
    <message>
        <source>CoordsTransform_Set4params</source>
        <translation>输入四参数</translation>
    </message>
    <message>
        <source>CoordsTransform_Set7params</source>
        <translation>输入七参数</translation>
    </message>
</context>
<context>
    <name>UserGuideDialog</name>
    <message>
        <source>User Guide</source>
        <translation>用户指南</translation>
    </message>
    <message>
        <source>The user guide %1 is missing.</source>
        <translation>找不到用户指南 %1。</translation>
    </message>
</context>
<context>
    <name>VectorLayerSource</name>
    <message>
        <source>%1 cannot be drawn in the map&apos;s coordinate system: %2</source>
        <translation>%1 无法在地图坐标系中绘制：%2</translation>
    </message>
</context>
</TS>
